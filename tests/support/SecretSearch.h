#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

/// Looks for what was typed, wherever it should not be.
namespace tessarok::testing {

using Secrets = std::vector<std::string>;

inline bool holdsSecret(const std::filesystem::path& file, const Secrets& secrets) {
  std::ifstream in(file, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(in), {}};
  return std::any_of(secrets.begin(), secrets.end(), [&](const std::string& secret) {
    return text.find(secret) != std::string::npos;
  });
}

/// The files of a folder, and of all below it, that hold a secret or have one in their names.
inline std::vector<std::string> filesWith(const Secrets& secrets,
                                          const std::filesystem::path& folder) {
  std::vector<std::string> found;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    const auto name = entry.path().string();
    const bool isNamedSo = std::any_of(secrets.begin(), secrets.end(), [&](const auto& secret) {
      return name.find(secret) != std::string::npos;
    });
    if (isNamedSo || (entry.is_regular_file() && holdsSecret(entry.path(), secrets))) {
      found.push_back(name);
    }
  }
  return found;
}

/// The processes that hold a secret where other people can see it: in their arguments or in their
/// names; or that would hand it on, in their environments.
inline std::vector<std::string> processesWith(const Secrets& secrets) {
  std::vector<std::string> found;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    if (entry.path().filename().string().find_first_not_of("0123456789") != std::string::npos) {
      continue;
    }
    for (const auto* name : {"cmdline", "comm", "environ"}) {
      const auto file = entry.path() / name;
      if (holdsSecret(file, secrets)) found.push_back(file.string());
    }
  }
  return found;
}

}  // namespace tessarok::testing

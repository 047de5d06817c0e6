#pragma once

#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace tessarok::makedata {

/// An input that cannot be used. what() is one line, "FILE:LINE: reason", or "FILE: reason" when
/// the file as a whole is at fault (line 0).
class InputError final : public std::runtime_error {
 public:
  InputError(const std::filesystem::path& file, std::size_t line, const std::string& reason)
      : std::runtime_error(message(file, line, reason)) {}

 private:
  static std::string message(const std::filesystem::path& file, std::size_t line,
                             const std::string& reason) {
    std::string text = file.string();
    if (line != 0) text.append(1, ':').append(std::to_string(line));
    return text.append(": ").append(reason);
  }
};

}  // namespace tessarok::makedata

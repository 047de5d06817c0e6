#include "words/FolderNotes.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <random>
#include <utility>

#include "platform/Desktop.h"
#include "text/Text.h"
#include "words/UserDict.h"

namespace tessarok {

namespace {

/// The prefix is followed by so many digits of base 16.
constexpr std::size_t kDigits = 16;
constexpr std::string_view kHexDigits = "0123456789abcdef";
constexpr std::string_view kSuffix = ".txt";

platform::Files& files() {
  return platform::desktop().files();
}

std::filesystem::path pathOf(std::string_view name) {
  return UserDict::directory() / name;
}

/// A number that no other copy has drawn, nor this one before.
std::uint64_t drawNumber() {
  std::random_device device;
  return std::uint64_t{device()} << 32 | device();
}

std::string newName(std::string_view prefix) {
  std::string name(prefix);
  auto number = drawNumber();
  for (std::size_t digit = 0; digit < kDigits; ++digit, number >>= 4)
    name.push_back(kHexDigits[number & 0xF]);
  return name.append(kSuffix);
}

}  // namespace

platform::Failure FolderNotes::write(std::string_view text) const {
  try {
    return files().writeAtomically(pathOf(newName(prefix_)), std::string(title_).append(text));
  } catch (const std::exception& noNumber) {
    return platform::Failure(noNumber.what());
  }
}

FolderNotes::Names FolderNotes::find() const {
  Names names;
  for (auto& name : files().list(UserDict::directory())) {
    if (isName(name)) names.insert(std::move(name));
  }
  return names;
}

bool FolderNotes::isName(std::string_view name) const {
  if (name.size() != prefix_.size() + kDigits + kSuffix.size()) return false;
  if (!name.starts_with(prefix_) || !name.ends_with(kSuffix)) return false;
  const auto number = name.substr(prefix_.size(), kDigits);
  return number.find_first_not_of(kHexDigits) == std::string_view::npos;
}

std::optional<std::string> FolderNotes::read(std::string_view name) const {
  return readTitled(name, title_);
}

bool FolderNotes::remove(std::string_view name) {
  return files().remove(pathOf(name));
}

std::optional<std::string> FolderNotes::readTitled(std::string_view name, std::string_view title) {
  auto text = files().read(pathOf(name));
  if (!text || !text->starts_with(title) || !text::isValidUtf8(*text)) return std::nullopt;
  text->erase(0, title.size());
  return text;
}

}  // namespace tessarok

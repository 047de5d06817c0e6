#include "words/HandedOver.h"

#include <algorithm>
#include <cstdint>
#include <random>

#include "platform/Desktop.h"
#include "text/CheckedArithmetic.h"
#include "text/Text.h"
#include "words/UserDict.h"
#include "words/WordLines.h"

namespace tessarok {

namespace {

/// Names start with it, sixteen digits follow, of base 16.
constexpr std::string_view kPrefix = ".learned-";
constexpr std::string_view kSuffix = ".txt";
constexpr std::size_t kDigits = 16;
constexpr const char* kReceipt = ".learned.receipt.txt";
/// The first lines, so that no file of somebody else is taken for one.
constexpr std::string_view kTitle = "# Tessarok: learned, to be counted\n";
constexpr std::string_view kReceiptTitle = "# Tessarok: counted\n";
/// The line between the names of a receipt and the text.
constexpr std::string_view kRejectsTitle = "# rejects.txt\n";

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

std::string newName() {
  constexpr std::string_view kHexDigits = "0123456789abcdef";
  std::string name(kPrefix);
  auto number = drawNumber();
  for (std::size_t digit = 0; digit < kDigits; ++digit, number >>= 4)
    name.push_back(kHexDigits[number & 0xF]);
  return name.append(kSuffix);
}

bool isName(std::string_view name) {
  if (name.size() != kPrefix.size() + kDigits + kSuffix.size()) return false;
  if (!name.starts_with(kPrefix) || !name.ends_with(kSuffix)) return false;
  const auto number = name.substr(kPrefix.size(), kDigits);
  return std::all_of(number.begin(), number.end(),
                     [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'); });
}

/// What follows the title of a file; absent when it has another.
std::optional<std::string> readTitled(std::string_view name, std::string_view title) {
  auto text = files().read(pathOf(name));
  if (!text || !text->starts_with(title) || !text::isValidUtf8(*text)) return std::nullopt;
  text->erase(0, title.size());
  return text;
}

}  // namespace

platform::Failure HandedOver::write(const LearnedLists::Counts& rejections) {
  try {
    return files().writeAtomically(pathOf(newName()),
                                   std::string(kTitle) + LearnedLists::linesOf(rejections));
  } catch (const std::exception& noNumber) {
    return platform::Failure(noNumber.what());
  }
}

HandedOver::Names HandedOver::find() {
  Names names;
  for (auto& name : files().list(UserDict::directory())) {
    if (isName(name)) names.insert(std::move(name));
  }
  return names;
}

std::optional<LearnedLists::Counts> HandedOver::read(std::string_view name) {
  const auto text = readTitled(name, kTitle);
  if (!text) return std::nullopt;
  LearnedLists::Counts rejections;
  WordLines lines(*text);
  while (lines.next()) {
    const auto entry = LearnedLists::parseLine(lines.line());
    if (!entry) continue;
    auto& count = rejections[entry->first];
    // More than this makes no difference.
    const auto added = std::min(entry->second, LearnedLists::kPromotionThreshold);
    count = std::min(checkedAdd(count, added), LearnedLists::kPromotionThreshold);
  }
  return rejections;
}

HandedOver::Names HandedOver::remove(const Names& names) {
  Names left;
  for (const auto& name : names) {
    if (!files().remove(pathOf(name))) left.insert(name);
  }
  return left;
}

std::optional<HandedOver::Receipt> HandedOver::readReceipt() {
  auto text = readTitled(kReceipt, kReceiptTitle);
  if (!text) return std::nullopt;
  const auto end = text->find(kRejectsTitle);
  if (end == std::string::npos) return std::nullopt;
  Receipt receipt;
  WordLines lines(std::string_view(*text).substr(0, end));
  while (lines.next()) {
    // Whatever else it says is not to be removed.
    if (isName(lines.line())) receipt.names.emplace(lines.line());
  }
  receipt.rejects = text->substr(end + kRejectsTitle.size());
  return receipt;
}

platform::Failure HandedOver::writeReceipt(const Receipt& receipt) {
  std::string text(kReceiptTitle);
  for (const auto& name : receipt.names)
    text.append(name).push_back('\n');
  text.append(kRejectsTitle).append(receipt.rejects);
  return files().writeAtomically(pathOf(kReceipt), text);
}

void HandedOver::removeReceipt() {
  static_cast<void>(files().remove(pathOf(kReceipt)));
}

}  // namespace tessarok

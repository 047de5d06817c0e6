#include "words/HandedOver.h"

#include <algorithm>

#include "platform/Desktop.h"
#include "text/CheckedArithmetic.h"
#include "words/FolderNotes.h"
#include "words/UserDict.h"
#include "words/WordLines.h"

namespace tessarok {

namespace {

constexpr FolderNotes kNotes(".learned-", "# Tessarok: learned, to be counted\n");
constexpr const char* kReceipt = ".learned.receipt.txt";
constexpr std::string_view kReceiptTitle = "# Tessarok: counted\n";
/// The line between the names of a receipt and the text.
constexpr std::string_view kRejectsTitle = "# rejects.txt\n";

}  // namespace

platform::Failure HandedOver::write(const LearnedLists::Counts& rejections) {
  return kNotes.write(LearnedLists::linesOf(rejections));
}

HandedOver::Names HandedOver::find() {
  return kNotes.find();
}

std::optional<LearnedLists::Counts> HandedOver::read(std::string_view name) {
  const auto text = kNotes.read(name);
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
    if (!FolderNotes::remove(name)) left.insert(name);
  }
  return left;
}

std::optional<HandedOver::Receipt> HandedOver::readReceipt() {
  auto text = FolderNotes::readTitled(kReceipt, kReceiptTitle);
  if (!text) return std::nullopt;
  const auto end = text->find(kRejectsTitle);
  if (end == std::string::npos) return std::nullopt;
  Receipt receipt;
  WordLines lines(std::string_view(*text).substr(0, end));
  while (lines.next()) {
    // Whatever else it says is not to be removed.
    if (kNotes.isName(lines.line())) receipt.names.emplace(lines.line());
  }
  receipt.rejects = text->substr(end + kRejectsTitle.size());
  return receipt;
}

platform::Failure HandedOver::writeReceipt(const Receipt& receipt) {
  std::string text(kReceiptTitle);
  for (const auto& name : receipt.names)
    text.append(name).push_back('\n');
  text.append(kRejectsTitle).append(receipt.rejects);
  return platform::desktop().files().writeAtomically(UserDict::directory() / kReceipt, text);
}

void HandedOver::removeReceipt() {
  static_cast<void>(FolderNotes::remove(kReceipt));
}

}  // namespace tessarok

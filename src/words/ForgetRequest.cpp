#include "words/ForgetRequest.h"

#include <string>

#include "text/Text.h"
#include "words/WordLines.h"

namespace tessarok {

namespace {

constexpr FolderNotes kNotes(".forget-", "# Tessarok: to be forgotten\n");

}  // namespace

platform::Failure ForgetRequest::write(const WordSet& words) {
  std::string text;
  for (const auto& word : words)
    text.append(word).push_back('\n');
  return kNotes.write(text);
}

ForgetRequest::Names ForgetRequest::find() {
  return kNotes.find();
}

std::optional<WordSet> ForgetRequest::read(std::string_view name) {
  const auto text = kNotes.read(name);
  if (!text) return std::nullopt;
  WordSet words;
  WordLines lines(*text, WordLines::Split::atLoneLf);
  while (lines.next())
    words.insert(text::normalizedWord(lines.line()));
  return words;
}

bool ForgetRequest::remove(std::string_view name) {
  return FolderNotes::remove(name);
}

}  // namespace tessarok

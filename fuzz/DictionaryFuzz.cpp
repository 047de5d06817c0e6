// Dictionary files, held to each of the two alphabets in turn.

#include <algorithm>
#include <set>
#include <string>

#include "Check.h"
#include "FuzzDesktop.h"
#include "Input.h"
#include "words/DictFile.h"

namespace tessarok::fuzz {
namespace {

bool isLetters(std::string_view line, Language language) {
  if (language == Language::english) {
    return std::all_of(line.begin(), line.end(), [](char c) { return c >= 'a' && c <= 'z'; });
  }
  static constexpr std::string_view kLetters = "абвгдеёжзийклмнопрстуфхцчшщъыьэюя";
  for (std::size_t i = 0; i < line.size(); i += 2) {
    // A letter is two bytes and stands at an even place.
    const auto at = kLetters.find(line.substr(i, 2));
    if (line.size() - i < 2 || at == std::string_view::npos || at % 2 != 0) return false;
  }
  return true;
}

/// The rules of the format, said a second time and as simply as possible.
bool isDictionary(std::string_view text, Language language) {
  if (text.empty()) return false;
  const auto lines = linesOf(text);
  return std::is_sorted(lines.begin(), lines.end()) &&
         std::all_of(lines.begin(), lines.end(), [&](std::string_view line) {
           return !line.empty() && isLetters(line, language);
         });
}

void checkAs(const std::string& resource, std::string_view text) {
  static FuzzDesktop desktop;
  const auto language = DictFile::languageOf(resource);
  const auto fault = DictFile::findFault(text, language);
  check(!fault == isDictionary(text, language), "a file is refused exactly when it breaks a rule");
  const auto lines = linesOf(text);
  if (fault) check(fault->line <= lines.size(), "the line of a fault is in the file");

  desktop.files().put(FuzzDesktop::resource(resource), std::string(text));
  const DictFile dictionary(resource);
  check(dictionary.isAvailable() == !fault, "a file without a fault is used");
  check(desktop.systemLog().take().size() == (fault ? 1u : 0u), "one message for a bad file");
  const std::set<std::string_view> words(lines.begin(), lines.end());
  for (const auto line : lines) {
    check(dictionary.contains(line) == !fault, "every line of a good file is found");
    for (const auto& other : {std::string(line) + "a", std::string(line) + "ё",
                              std::string(line.substr(0, line.size() / 2))}) {
      const bool isLine = !fault && words.contains(other);
      check(dictionary.contains(other) == isLine, "nothing else is found");
    }
  }
}

}  // namespace
}  // namespace tessarok::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto text = tessarok::fuzz::textOf(data, size);
  tessarok::fuzz::checkAs("dict_en", text);
  tessarok::fuzz::checkAs("dict_ru", text);
  return 0;
}

#include "SentenceTypist.h"

#include <stdexcept>

#include "desktops/layouts/KeyTable.h"
#include "text/Text.h"
#include "typing/KeyCodes.h"

namespace tessarok::measure {

namespace {

using layouts::KeyTable;

constexpr const char* kEnglishLayout = "com.apple.keylayout.US";
constexpr const char* kRussianLayout = "com.apple.keylayout.RussianWin";

/// Seconds from one sentence to the next, longer than the pause.
constexpr double kSentenceInterval = 10;

}  // namespace

SentenceTypist::SentenceTypist(const std::filesystem::path& resources)
    : session_(std::nullopt, resources) {
  session_.desktop().inputSources().setCurrent(kEnglishLayout);
  session_.launch();
  const auto complaints = session_.desktop().systemLog().take();
  if (!complaints.empty()) throw std::runtime_error(complaints.front());
}

std::string SentenceTypist::type(const Sentence& sentence, Layout layout) {
  auto& desktop = session_.desktop();
  const auto selected = layout == Layout::right ? sentence.language : other(sentence.language);
  desktop.selectInputSource(selected == Language::russian ? kRussianLayout : kEnglishLayout);
  desktop.clearTextField();
  desktop.wait(kSentenceInterval);
  const auto& table = KeyTable::of(sentence.language);
  for (const auto character : text::Characters(sentence.text)) {
    desktop.wait(kKeyInterval);
    if (character == " ") {
      desktop.stroke({keyCodes::space, false});
      continue;
    }
    const auto scalar = text::singleScalar(character);
    if (const auto stroke = scalar ? table.strokeFor(*scalar) : std::nullopt) {
      desktop.stroke(*stroke);
    }
  }
  // The end of the line ends the last word and makes the program forget the sentence.
  desktop.stroke({keyCodes::returnKey, false});
  auto screen = desktop.textField().text();
  if (screen.ends_with('\n')) screen.pop_back();
  return screen;
}

}  // namespace tessarok::measure

#include "SentenceTypist.h"

#include <stdexcept>

#include "desktops/layouts/KeyTable.h"
#include "desktops/layouts/KeyText.h"
#include "desktops/xkb/HardwareKeys.h"
#include "platform/EventFlags.h"
#include "text/Text.h"
#include "typing/InputSource.h"
#include "typing/KeyCodes.h"

namespace tessarok::measure {

namespace {

using layouts::KeyTable;

constexpr const char* kEnglishLayout = "com.apple.keylayout.US";
constexpr const char* kRussianLayout = "com.apple.keylayout.RussianWin";

/// A key that the corrector knows nothing of but what it types.
constexpr KeyCode kNoKey = xkb::hardwareKeys::kNoKey;

/// Seconds from one sentence to the next, longer than the pause.
constexpr double kSentenceInterval = 10;

}  // namespace

SentenceTypist::SentenceTypist(const Setup& setup)
    : session_(std::nullopt, setup.resources), pauseKey_(setup.pauseKey) {
  session_.desktop().inputSources().setCurrent(kEnglishLayout);
  session_.launch();
  const auto complaints = session_.desktop().systemLog().take();
  if (!complaints.empty()) throw std::runtime_error(complaints.front());
}

void SentenceTypist::strike(const KeyTable::Stroke& stroke) {
  auto& desktop = session_.desktop();
  const auto layout = InputSource::languageOf(desktop.inputSources().current());
  if (!xkb::PauseKey::isOne(stroke.code) || pauseKey_.pauses(stroke.code, layout)) {
    desktop.stroke(stroke);
    return;
  }
  // As a desktop does it where this key is a letter: it comes without a code.
  const auto modifiers = stroke.shift ? platform::eventFlags::shift : 0;
  const auto text = layouts::keyText(desktop.inputSources().table(), stroke.code, modifiers);
  desktop.keyDown({.code = kNoKey, .modifiers = modifiers, .characters = text});
  desktop.keyUp(kNoKey, modifiers);
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
      strike(*stroke);
    }
  }
  // The end of the line ends the last word and makes the program forget the sentence.
  desktop.stroke({keyCodes::returnKey, false});
  auto screen = desktop.textField().text();
  if (screen.ends_with('\n')) screen.pop_back();
  return screen;
}

}  // namespace tessarok::measure

#include "commands/TypeCommand.h"

#include <iostream>

#include "commands/Input.h"
#include "commands/WordData.h"
#include "desktops/layouts/KeyTable.h"
#include "desktops/posix/Translation.h"
#include "desktops/virtual/Session.h"
#include "text/Text.h"
#include "typing/KeyCodes.h"
#include "typing/KeyTap.h"
#include "words/Letters.h"

namespace tessarok::commands {

namespace {

using layouts::KeyTable;
using virtualdesktop::VirtualDesktop;

/// A key of no layout; characters that no key types, such as emoji, come with it.
constexpr KeyCode kCharacterPalette = 0xFFFF;

/// Seconds from key to key in a pause, as of somebody who types 300 characters a minute. Else the
/// clock stands still: in a second of work a day of typing would go by, with all its ticks.
constexpr double kKeyInterval = 0.2;

/// The language of the first letter.
Language languageAtStart(std::string_view text) {
  for (const auto character : text::Characters(text)) {
    if (const auto language = letters::languageOf(character)) return *language;
  }
  return Language::english;
}

/// Types the Characters of a text, each on the keyboard that it belongs to: letters on that of
/// their alphabet, everything else on that of the letters before it.
class Typist {
 public:
  Typist(VirtualDesktop& desktop, Language start) : desktop_(desktop), language_(start) {}

  void type(std::string_view character) {
    if (character == " ") return desktop_.stroke({keyCodes::space, false});
    if (character == "\t") return desktop_.stroke({keyCodes::tab, false});
    if (character == "\n" || character == "\r\n") {
      return desktop_.stroke({keyCodes::returnKey, false});
    }
    language_ = letters::languageOf(character).value_or(language_);
    if (const auto stroke = strokeFor(character)) return desktop_.stroke(*stroke);
    desktop_.keyDown({.code = kCharacterPalette, .characters = text::utf16(character)});
    desktop_.keyUp(kCharacterPalette, 0);
  }

 private:
  [[nodiscard]] std::optional<KeyTable::Stroke> strokeFor(std::string_view character) const {
    const auto scalar = text::singleScalar(character);
    if (!scalar) return std::nullopt;
    const auto stroke = KeyTable::of(language_).strokeFor(*scalar);
    return stroke ? stroke : KeyTable::of(other(language_)).strokeFor(*scalar);
  }

  VirtualDesktop& desktop_;
  Language language_;
};

}  // namespace

int runType(const Options& options, const TypeOptions& type) {
  const auto text = type.text ? *type.text : readStandardInput();
  requireUtf8(text, posix::translated("the text"));
  const auto start = type.from.value_or(languageAtStart(text));
  virtualdesktop::Session session(std::nullopt, options.resources);
  requireWordData(type.lists == Lists::none ? Packs::unused : Packs::needed);
  auto& desktop = session.desktop();
  copyLists(desktop, type.lists);
  desktop.inputSources().setCurrent(start);
  session.launch();
  for (const auto& message : desktop.systemLog().take())
    std::cerr << message << '\n';
  Typist typist(desktop, start);
  for (const auto character : text::Characters(text)) {
    typist.type(character);
    if (KeyTap::shared().isPaused()) desktop.wait(kKeyInterval);
  }
  const auto screen = desktop.textField().text();
  std::cout << screen;
  if (!screen.ends_with('\n')) std::cout << '\n';
  return 0;
}

}  // namespace tessarok::commands

#include "desktops/layouts/KeyText.h"

#include "platform/EventFlags.h"

namespace tessarok::layouts {

namespace {

namespace flags = platform::eventFlags;

constexpr char16_t kNoBreakSpace = 0xA0;
/// What cursor keys carry: a character of the private-use area.
constexpr char16_t kCursorKey = 0xF700;

/// What a key gives in every layout; 0 for the keys of the layout's table.
char16_t fixedCharacter(KeyCode code, bool option) {
  switch (code) {
    case keyCodes::space:
      return option ? kNoBreakSpace : u' ';
    case keyCodes::returnKey:
      return u'\r';
    case keyCodes::enter:
      return u'\u0003';
    case keyCodes::tab:
      return u'\t';
    case keyCodes::escape:
      return u'\u001b';
    case keyCodes::backspace:
    case keyCodes::forwardDelete:
      return u'\u007f';
    case keyCodes::left:
    case keyCodes::right:
    case keyCodes::up:
    case keyCodes::down:
    case keyCodes::home:
    case keyCodes::end:
    case keyCodes::pageUp:
    case keyCodes::pageDown:
      return kCursorKey;
    default:
      return 0;
  }
}

}  // namespace

std::u16string keyText(const KeyTable& table, KeyCode code, std::uint64_t modifiers) {
  if (const auto fixed = fixedCharacter(code, (modifiers & flags::option) != 0)) {
    return std::u16string(1, fixed);
  }
  const auto character = table.character(code, (modifiers & flags::shift) != 0);
  return character ? std::u16string(1, *character) : std::u16string();
}

}  // namespace tessarok::layouts

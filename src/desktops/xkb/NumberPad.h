#pragma once

#include <cstdint>
#include <optional>
#include <xkbcommon/xkbcommon-keysyms.h>

#include "typing/KeyCodes.h"

namespace tessarok::xkb {

/// The key that moves the caret as this symbol of the number pad does; absent for any other symbol.
[[nodiscard]] inline std::optional<KeyCode> caretMoverOfNumberPad(std::uint32_t symbol) {
  switch (symbol) {
    case XKB_KEY_KP_Home:
      return keyCodes::home;
    case XKB_KEY_KP_Left:
      return keyCodes::left;
    case XKB_KEY_KP_Up:
      return keyCodes::up;
    case XKB_KEY_KP_Right:
      return keyCodes::right;
    case XKB_KEY_KP_Down:
      return keyCodes::down;
    case XKB_KEY_KP_Page_Up:
      return keyCodes::pageUp;
    case XKB_KEY_KP_Page_Down:
      return keyCodes::pageDown;
    case XKB_KEY_KP_End:
      return keyCodes::end;
    case XKB_KEY_KP_Delete:
      return keyCodes::forwardDelete;
    default:
      return std::nullopt;
  }
}

}  // namespace tessarok::xkb

#pragma once

#include <fcitx-utils/key.h>
#include <fcitx/event.h>

#include "desktops/inputmethod/KeyEvent.h"

/// Keys between Fcitx's words and the common ones: the numbers are X's in both. Pure functions.
namespace tessarok::fcitx5::fcitxKeys {

[[nodiscard]] inline inputmethod::Key keyOf(const fcitx::Key& key) {
  return {.symbol = static_cast<std::uint32_t>(key.sym()),
          .states = static_cast<std::uint32_t>(key.states()),
          .code = key.code()};
}

[[nodiscard]] inline fcitx::Key fcitxKeyOf(const inputmethod::Key& key) {
  return fcitx::Key(static_cast<fcitx::KeySym>(key.symbol), fcitx::KeyStates(key.states), key.code);
}

[[nodiscard]] inline inputmethod::KeyEvent eventOf(const fcitx::KeyEvent& event) {
  return {.key = keyOf(event.origKey()),
          .translated = keyOf(event.rawKey()),
          .isRelease = event.isRelease(),
          .time = event.time(),
          .isTranslating = event.forward()};
}

/// Tells Fcitx what is to become of a key.
inline void answer(fcitx::KeyEvent& event, inputmethod::KeyAnswer answer) {
  if (answer == inputmethod::KeyAnswer::take) event.filterAndAccept();
  if (answer == inputmethod::KeyAnswer::hide) event.filter();
}

}  // namespace tessarok::fcitx5::fcitxKeys

#pragma once

namespace tessarok::x11 {

/// The modifiers and the layout group of the keyboard, as XKB numbers them.
struct KeyboardState {
  unsigned baseModifiers = 0;
  unsigned latchedModifiers = 0;
  unsigned lockedModifiers = 0;
  /// The group in effect.
  unsigned group = 0;
  unsigned baseGroup = 0;
  unsigned latchedGroup = 0;
  unsigned lockedGroup = 0;

  [[nodiscard]] unsigned modifiers() const {
    return baseModifiers | latchedModifiers | lockedModifiers;
  }
};

}  // namespace tessarok::x11

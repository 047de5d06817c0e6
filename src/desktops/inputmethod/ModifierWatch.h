#pragma once

#include <cstdint>
#include <optional>

#include "desktops/inputmethod/KeyEvent.h"

namespace tessarok::inputmethod {

/// The modifiers that are down. On Wayland a key that is handed back to a program comes with those
/// of the moment, and not with those with which it was pressed: Return would become Shift+Return
/// when the next word begins with a capital. Main thread.
class ModifierWatch final {
 public:
  /// Seconds for which a key waits for modifiers to be released. Nobody types capitals for so long
  /// whilst a word is being retyped, and other keys wait behind it.
  static constexpr double kLimit = 1;

  /// Nothing is down.
  void reset();
  /// A modifier was pressed or released.
  void modifierKey(const KeyEvent& event, double now);
  /// Another key was: with these modifiers.
  void otherKey(std::uint32_t states);

  /// The time at which to ask again; absent when a key that was pressed with these modifiers is
  /// to be sent now.
  [[nodiscard]] std::optional<double> waitFor(std::uint32_t states, double now);

 private:
  std::uint32_t down_ = 0;
  /// When a modifier key was; absent when a key has come since.
  std::optional<double> changedAt_;
  std::optional<double> waitingSince_;
};

}  // namespace tessarok::inputmethod

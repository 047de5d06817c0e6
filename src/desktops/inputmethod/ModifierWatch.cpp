#include "desktops/inputmethod/ModifierWatch.h"

#include <xkbcommon/xkbcommon-keysyms.h>

namespace tessarok::inputmethod {

namespace {

/// The compositor tells the new state behind the key; this long at most.
constexpr double kStateDelay = 0.003;

std::uint32_t modifiersIn(std::uint32_t states) {
  return states & (keyStates::shift | keyStates::control | keyStates::alt | keyStates::super |
                   keyStates::mod5);
}

std::uint32_t stateOf(std::uint32_t symbol) {
  switch (symbol) {
    case XKB_KEY_Shift_L:
    case XKB_KEY_Shift_R:
      return keyStates::shift;
    case XKB_KEY_Control_L:
    case XKB_KEY_Control_R:
      return keyStates::control;
    case XKB_KEY_Alt_L:
    case XKB_KEY_Alt_R:
    case XKB_KEY_Meta_L:
    case XKB_KEY_Meta_R:
      return keyStates::alt;
    case XKB_KEY_Super_L:
    case XKB_KEY_Super_R:
      return keyStates::super;
    case XKB_KEY_ISO_Level3_Shift:
      return keyStates::mod5;
    default:
      return 0;
  }
}

}  // namespace

void ModifierWatch::reset() {
  *this = ModifierWatch();
}

void ModifierWatch::modifierKey(const KeyEvent& event, double now) {
  const auto state = stateOf(event.key.symbol);
  down_ = modifiersIn(event.key.states);
  down_ = event.isRelease ? down_ & ~state : down_ | state;
  changedAt_ = now;
}

void ModifierWatch::otherKey(std::uint32_t states) {
  down_ = modifiersIn(states);
  changedAt_.reset();
}

std::optional<double> ModifierWatch::waitFor(std::uint32_t states, double now) {
  const bool isTooMuchDown = (down_ & ~modifiersIn(states)) != 0;
  if (!isTooMuchDown) {
    waitingSince_.reset();
    if (changedAt_ && now < *changedAt_ + kStateDelay) return *changedAt_ + kStateDelay;
    return std::nullopt;
  }
  const auto until = waitingSince_.value_or(now) + kLimit;
  waitingSince_ = until - kLimit;
  if (now < until) return until;
  waitingSince_.reset();
  return std::nullopt;
}

}  // namespace tessarok::inputmethod

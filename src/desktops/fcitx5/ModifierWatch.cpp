#include "desktops/fcitx5/ModifierWatch.h"

namespace tessarok::fcitx5 {

namespace {

using fcitx::KeyState;
using fcitx::KeyStates;

/// The compositor tells the new state behind the key; this long at most.
constexpr double kStateDelay = 0.003;

KeyStates modifiersIn(KeyStates states) {
  return states &
         KeyStates{KeyState::Shift, KeyState::Ctrl, KeyState::Alt, KeyState::Super, KeyState::Mod5};
}

KeyStates stateOf(fcitx::KeySym symbol) {
  switch (symbol) {
    case FcitxKey_Shift_L:
    case FcitxKey_Shift_R:
      return KeyState::Shift;
    case FcitxKey_Control_L:
    case FcitxKey_Control_R:
      return KeyState::Ctrl;
    case FcitxKey_Alt_L:
    case FcitxKey_Alt_R:
    case FcitxKey_Meta_L:
    case FcitxKey_Meta_R:
      return KeyState::Alt;
    case FcitxKey_Super_L:
    case FcitxKey_Super_R:
      return KeyState::Super;
    case FcitxKey_ISO_Level3_Shift:
      return KeyState::Mod5;
    default:
      return KeyState::NoState;
  }
}

}  // namespace

void ModifierWatch::reset() {
  *this = ModifierWatch();
}

void ModifierWatch::modifierKey(const fcitx::KeyEvent& event, double now) {
  const auto& key = event.origKey();
  const auto state = stateOf(key.sym());
  down_ = modifiersIn(key.states());
  down_ = event.isRelease() ? down_.unset(state) : down_ | state;
  changedAt_ = now;
}

void ModifierWatch::otherKey(KeyStates states) {
  down_ = modifiersIn(states);
  changedAt_.reset();
}

std::optional<double> ModifierWatch::waitFor(KeyStates states, double now) {
  const bool isTooMuchDown = (down_ & ~modifiersIn(states)) != KeyStates();
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

}  // namespace tessarok::fcitx5

#pragma once

#include "desktops/x11/FocusWatch.h"
#include "platform/SecureInput.h"

namespace tessarok::x11 {

/// Another program has taken the keyboard, or the session says that a password is being typed.
/// Main thread.
class X11SecureInput final : public platform::SecureInput {
 public:
  /// Both outlive this object; `session` may be null.
  X11SecureInput(const FocusWatch& focus, platform::SecureInput* session)
      : focus_(focus), session_(session) {}

  bool isEnabled() override {
    return focus_.isKeyboardTaken() || (session_ != nullptr && session_->isEnabled());
  }

 private:
  const FocusWatch& focus_;
  platform::SecureInput* session_;
};

}  // namespace tessarok::x11

#pragma once

#include "desktops/terminal/Pty.h"
#include "platform/SecureInput.h"

namespace tessarok::terminal {

/// A password is being asked for in the pseudo-terminal. Main thread.
class TerminalSecureInput final : public platform::SecureInput {
 public:
  /// Off until there is a pseudo-terminal to ask. `pty` outlives this object.
  void watch(const Pty& pty) { pty_ = &pty; }
  bool isEnabled() override {
    if (pty_ == nullptr) return false;
    const auto modes = pty_->modes();
    // Of a terminal that is gone nothing is known, so nothing is remembered.
    return !modes || modes->isSecret();
  }

 private:
  const Pty* pty_ = nullptr;
};

}  // namespace tessarok::terminal

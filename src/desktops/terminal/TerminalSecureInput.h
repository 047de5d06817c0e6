#pragma once

#include <optional>

#include "desktops/terminal/Pty.h"
#include "platform/SecureInput.h"

namespace tessarok::terminal {

/// A password is being asked for in the pseudo-terminal. Main thread.
class TerminalSecureInput final : public platform::SecureInput {
 public:
  /// Off until there is a pseudo-terminal to ask. `pty` outlives this object.
  void watch(const Pty& pty) { pty_ = &pty; }
  /// For a moment, how the pseudo-terminal is set was just read, and need not be read again.
  class Known final {
   public:
    /// Both outlive this object.
    Known(TerminalSecureInput& input, const std::optional<PtyModes>& modes) : input_(input) {
      input_.known_ = &modes;
    }
    Known(const Known&) = delete;
    Known& operator=(const Known&) = delete;
    ~Known() { input_.known_ = nullptr; }

   private:
    TerminalSecureInput& input_;
  };

  bool isEnabled() override {
    if (pty_ == nullptr) return false;
    const auto modes = known_ != nullptr ? *known_ : pty_->modes();
    // Of a terminal that is gone nothing is known, so nothing is remembered.
    return !modes || modes->isSecret();
  }

 private:
  const Pty* pty_ = nullptr;
  const std::optional<PtyModes>* known_ = nullptr;
};

}  // namespace tessarok::terminal

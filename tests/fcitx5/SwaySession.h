#pragma once

#include <memory>
#include <string>
#include <vector>

#include "fcitx5/Session.h"
#include "fcitx5/VirtualKeyboard.h"

namespace tessarok::testing {

/// A Wayland compositor without a screen. Programs speak to Fcitx through it alone. It refuses to
/// run as root; then everything runs as nobody.
class SwaySession final : public Session {
 public:
  SwaySession();
  ~SwaySession() override;

  /// Why there can be none here; empty when there can.
  [[nodiscard]] static std::string obstacle();
  [[nodiscard]] Hands& hands() override { return *keyboard_; }

 private:
  [[nodiscard]] std::vector<std::string> inSession(std::vector<std::string> command) const override;

  std::unique_ptr<Subprocess> sway_;
  std::unique_ptr<VirtualKeyboard> keyboard_;
};

}  // namespace tessarok::testing

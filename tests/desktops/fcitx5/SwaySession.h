#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/desktops/fcitx5/Session.h"
#include "tests/desktops/fcitx5/VirtualKeyboard.h"

namespace tessarok::testing {

/// A Wayland compositor without a screen. Programs speak to Fcitx through it alone. It refuses to
/// run as root; then everything runs as nobody.
class SwaySession final : public Session {
 public:
  /// Why there can be none on this machine; absent when nothing is known to be in the way.
  [[nodiscard]] static std::optional<std::string> obstacle();

  SwaySession();
  ~SwaySession() override;

  [[nodiscard]] Hands& hands() override { return *keyboard_; }
  /// A compositor has room for a few hundred events that a program has not read yet, and a busy
  /// machine may keep Fcitx from reading for as long as they take to type.
  [[nodiscard]] std::optional<std::size_t> mostLinesAhead() const override { return 3; }

 private:
  [[nodiscard]] std::vector<std::string> inSession(std::vector<std::string> command) const override;

  std::unique_ptr<Subprocess> sway_;
  std::unique_ptr<VirtualKeyboard> keyboard_;
};

}  // namespace tessarok::testing

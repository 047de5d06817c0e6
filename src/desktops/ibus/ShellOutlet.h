#pragma once

#include <functional>
#include <optional>

#include "desktops/freedesktop/BusSlot.h"
#include "desktops/ibus/ShellExtension.h"
#include "platform/Clock.h"

namespace tessarok::ibus {

/// Learns from the extension of GNOME's shell when the shell has passed on what was sent to a text
/// field: it lets texts lie until it has nothing more urgent to do, and keeps the last one only.
/// Main thread.
class ShellOutlet final {
 public:
  /// Seconds that the shell may take.
  static constexpr double kPatience = 1;
  /// Seconds before it is asked again when it answers with an error.
  static constexpr double kAskAgain = 30;

  /// All outlive this object; `session` is null without a session bus.
  ShellOutlet(freedesktop::Bus* session, ShellExtension& extension, platform::Clock& clock)
      : session_(session), extension_(extension), clock_(clock) {}
  ShellOutlet(const ShellOutlet&) = delete;
  ShellOutlet& operator=(const ShellOutlet&) = delete;

  /// Something is on its way to a text field.
  void noteSent();
  /// Asks the shell to answer when it has passed all of it on.
  void flush();
  /// The time at which to ask again; absent when all has been passed on, as far as that can be
  /// known.
  [[nodiscard]] std::optional<double> undeliveredUntil(double now) const;
  /// Whether the shell tells at all.
  [[nodiscard]] bool isAnswering() const { return isAnswering_ && mayAnswer(); }
  /// How many seconds its answers took lately, which on a busy machine programs take as well.
  [[nodiscard]] double slowest() const { return slowest_; }
  /// All has been passed on.
  std::function<void()> onDelivered;
  /// The extension was switched on or off.
  void extensionChanged() { deafUntil_ = 0; }

 private:
  [[nodiscard]] bool mayAnswer() const;
  void answered(bool isError);

  freedesktop::Bus* session_;
  ShellExtension& extension_;
  platform::Clock& clock_;
  freedesktop::BusSlot call_;
  /// When the last thing was sent; absent when all has been passed on.
  std::optional<double> sentAt_;
  double askedAt_ = 0;
  double slowest_ = 0;
  bool isToBeAsked_ = false;
  bool isAnswering_ = true;
  double deafUntil_ = 0;
};

}  // namespace tessarok::ibus

#pragma once

#include <functional>
#include <optional>

#include "desktops/freedesktop/Bus.h"
#include "platform/Clock.h"

namespace tessarok::ibus {

/// Learns from the extension of GNOME's shell when the shell has passed on what was sent to a text
/// field: it lets texts lie until it has nothing more urgent to do, and keeps the last one only.
/// Main thread.
class ShellOutlet final {
 public:
  /// Seconds that the shell may take.
  static constexpr double kPatience = 1;
  /// Seconds before it is asked again whether it has the extension.
  static constexpr double kAskAgain = 30;

  /// Both outlive this object; `session` is null without a session bus.
  ShellOutlet(freedesktop::Bus* session, platform::Clock& clock)
      : session_(session), clock_(clock) {}
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
  [[nodiscard]] bool isAnswering() const { return isAnswering_; }
  /// How many seconds its answers took lately, which on a busy machine programs take as well.
  [[nodiscard]] double slowest() const { return slowest_; }
  /// All has been passed on.
  std::function<void()> onDelivered;

 private:
  void answered(bool isError);

  freedesktop::Bus* session_;
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

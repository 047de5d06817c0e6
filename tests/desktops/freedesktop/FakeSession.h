#pragma once

#include <map>
#include <memory>
#include <string>

#include "desktops/virtual/TemporaryDirectory.h"
#include "desktops/virtual/VirtualDesktop.h"
#include "tests/desktops/freedesktop/FakeService.h"
#include "tests/desktops/freedesktop/PrivateBus.h"
#include "tests/desktops/freedesktop/Pump.h"
#include "tests/desktops/freedesktop/StatusHost.h"

namespace tessarok::testing {

/// Everything that the program speaks with over D-Bus, all of it on one bus: a panel, the login
/// manager, notifications, and the accessibility bus with a text field that has the focus.
class FakeSession final {
 public:
  FakeSession();

  /// What the program's environment is to hold.
  [[nodiscard]] std::map<std::string, std::string> environment() const;
  /// Answers what has been asked by now.
  void serve() { pump_.serve(0); }
  /// Whether all of it has been found by a program.
  [[nodiscard]] bool isFound() const;
  /// Uses the program from all sides, and waits until it has dealt with that. Among other things a
  /// file is to be opened.
  void beBusy();
  /// Whether the program has taken note of that.
  [[nodiscard]] bool isFileChosen() const { return isFileChosen_; }
  /// Whether something was told in a notification.
  [[nodiscard]] bool isNotified() const { return isNotified_; }
  /// Forgets the program.
  void reset();
  [[nodiscard]] PrivateBus& bus() { return bus_; }

 private:
  struct Calls;

  void usePanel();
  void sendSignals();
  void settle();

  virtualdesktop::TemporaryDirectory home_;
  // Only its main loop is used here.
  virtualdesktop::VirtualDesktop base_{home_.path(), TESSAROK_TEST_DATA};
  Pump pump_{base_.runLoop()};
  PrivateBus bus_;
  FakeService services_{pump_, bus_.address()};
  std::unique_ptr<StatusHost> panel_;
  /// The connections of the program, by what they are for.
  std::map<std::string, std::string> program_;
  bool isFileChosen_ = false;
  bool isNotified_ = false;
};

}  // namespace tessarok::testing

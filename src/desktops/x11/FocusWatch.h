#pragma once

#include <functional>

#include "desktops/x11/XConnection.h"

union _XEvent;

namespace tessarok::x11 {

/// Where typing goes: another window in front, and another program that has taken the keyboard for
/// itself, as screen lockers and password prompts do. Main thread.
///
/// Why this way: to ask whether the keyboard is taken means to take it, which moves the focus. But
/// the server tells everyone who listens to a window when the keyboard is taken from it, so the
/// window that has the focus is listened to. A program that took the keyboard before this one was
/// started stays unknown.
class FocusWatch final {
 public:
  /// `connection` outlives this object.
  explicit FocusWatch(XConnection& connection);

  /// Another program has the keyboard to itself.
  [[nodiscard]] bool isKeyboardTaken() const { return isTaken_; }
  /// An event of the root window or of the one that has the focus.
  void handle(const _XEvent& event);

  /// Another window has the focus, or is the active one.
  std::function<void()> onChange;

 private:
  /// Whether another window has the focus now.
  bool follow();
  [[nodiscard]] unsigned long activeWindow() const;

  XConnection& connection_;
  unsigned long activeWindowName_;
  unsigned long active_ = 0;
  unsigned long focus_ = 0;
  bool isTaken_ = false;
};

}  // namespace tessarok::x11

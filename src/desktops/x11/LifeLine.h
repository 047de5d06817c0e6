#pragma once

#include <functional>

#include "desktops/posix/CallbackSource.h"
#include "desktops/posix/FileDescriptor.h"
#include "desktops/posix/PollLoop.h"

namespace tessarok::x11 {

/// What ties the process that holds the keyboards to the `Watchdog` that watches over it. This
/// process's end; main thread.
///
/// Behaviour. While the keyboards are held, every turn of the main loop and every event in it winds
/// an alarm clock that only the watchdog hears, and the loop stops it before it waits: so a process
/// that waits costs neither of them anything, and one that hangs is found out.
class LifeLine final {
 public:
  /// `line` is a socket to the watchdog, `alarm` a timer that it has too.
  LifeLine(posix::FileDescriptor line, posix::FileDescriptor alarm);
  LifeLine(const LifeLine&) = delete;
  LifeLine& operator=(const LifeLine&) = delete;
  ~LifeLine();

  /// `lost` is called when the watchdog ends before this process does. `loop` outlives this object;
  /// with its first turn the process counts as started.
  void watch(posix::PollLoop& loop, std::function<void()> lost);
  /// Keyboards are held from now on; false when there is no watchdog any more. After `watch`.
  [[nodiscard]] bool hold();
  /// The keyboards are free.
  void letGo();
  /// A part of this turn is done; the rest has as long as a turn of its own. On a machine that has
  /// much else to do, the keys that have come at once take longer than one of them may.
  void wind() const;

 private:
  [[nodiscard]] bool send(char message) const;
  void setAlarm(long milliseconds) const;
  void hangUp();

  posix::FileDescriptor line_;
  posix::FileDescriptor alarm_;
  posix::PollLoop* loop_ = nullptr;
  std::function<void()> lost_;
  posix::CallbackSource source_;
};

}  // namespace tessarok::x11

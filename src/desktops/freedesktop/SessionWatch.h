#pragma once

#include <string>
#include <vector>

#include "desktops/freedesktop/Bus.h"
#include "desktops/posix/NotificationCentre.h"
#include "platform/Environment.h"
#include "platform/SystemLog.h"

namespace tessarok::freedesktop {

/// Announces what happens to the machine and to the person's session. Main thread.
///
/// | what happens | from | announced |
/// | --- | --- | --- |
/// | the machine goes to sleep, wakes | logind | `willSleep`, `didWake` |
/// | another session is in front, or this one is locked | logind | `sessionResignedActive` |
/// | this session is in front and not locked again | logind | `sessionBecameActive` |
/// | the screen saver starts | the session's screen saver | `screensDidSleep` |
class SessionWatch final {
 public:
  /// Where the watch hears and announces. Everything outlives it.
  struct Surroundings {
    platform::Environment& environment;
    posix::NotificationCentre& centre;
    /// Is told when the system bus is missing, or lost.
    platform::SystemLog& log;
  };

  /// Either bus may be null, when there is none; then nothing is heard from it. Both outlive the
  /// watch.
  SessionWatch(Bus* system, Bus* session, const Surroundings& surroundings);
  SessionWatch(const SessionWatch&) = delete;
  SessionWatch& operator=(const SessionWatch&) = delete;
  ~SessionWatch() = default;

 private:
  void watchSleep(Bus& system);
  void findSession(Bus& system);
  void sessionUnknown(const std::string& reason);
  void watchSession(Bus& system, const std::string& path);
  void watchScreenSaver(Bus& session);
  void readProperties(sd_bus_message& message);
  void announceSession();

  Surroundings surroundings_;
  bool active_ = true;
  bool locked_ = false;
  bool announcedInFront_ = true;
  BusSlot session_;
  std::vector<BusSlot> subscriptions_;
};

}  // namespace tessarok::freedesktop

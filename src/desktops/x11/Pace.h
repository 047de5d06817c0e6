#pragma once

#include <chrono>

#include "desktops/x11/XConnection.h"

namespace tessarok::x11 {

/// Keeps step with the application that gets the keys. Some lose keys that come faster than they
/// take them: of twelve Backspaces that a word processor is sent at once, one erases, and the text
/// behind them is gone. So the application is asked now and then whether it has got so far, by the
/// ping with which window managers find out whether a window is alive: windows answer it in its
/// turn between their keys. One that does not say that it answers is not waited for. Main thread.
class Pace final {
 public:
  /// `connection`, which the keys are sent on, outlives this object.
  explicit Pace(XConnection& connection) : connection_(connection) {}
  Pace(const Pace&) = delete;
  Pace& operator=(const Pace&) = delete;
  ~Pace() = default;

  /// From here to `end` the window that has the focus now is waited for.
  void begin();
  /// Returns when the application has taken the keys that were sent, or when it has had its time.
  /// Whether it has said that it took them.
  bool wait();
  void end();

 private:
  using Clock = std::chrono::steady_clock;

  /// Opens the connection that answers arrive on; false when there is none.
  bool openListener();
  [[nodiscard]] unsigned long windowInFocus() const;
  [[nodiscard]] bool answersPings(unsigned long window) const;
  /// Whether the window has said that it took every key, and said so in time.
  [[nodiscard]] bool askUntilTaken();
  /// Whether the window answered a ping in time.
  [[nodiscard]] bool ask();
  void ping();
  /// Whether the answer came before the time was over.
  [[nodiscard]] bool awaitAnswer();
  [[nodiscard]] bool readAnswer();
  /// Nobody took anything; the window is not waited for any more.
  void giveUp();

  XConnection& connection_;
  /// Never closed; see `XConnection`.
  _XDisplay* listener_ = nullptr;
  bool isListenerLost_ = false;
  unsigned long protocolsName_ = 0;
  unsigned long pingName_ = 0;
  /// The window that is waited for; 0 for none.
  unsigned long window_ = 0;
  Clock::time_point deadline_;
  /// The window of this fix or of the last one, and how long it took to answer.
  unsigned long lastWindow_ = 0;
  Clock::duration slowest_{};
  /// Tells one ping from another, and from those of the window manager, which are times.
  long number_ = 0;
  /// Of this window the answers did not come in time, so often in a row.
  unsigned long lateWindow_ = 0;
  int lateTimes_ = 0;
};

}  // namespace tessarok::x11

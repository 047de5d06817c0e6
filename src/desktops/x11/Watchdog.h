#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <sys/types.h>

#include "desktops/posix/CallbackSource.h"
#include "desktops/posix/FileDescriptor.h"
#include "desktops/posix/MonotonicClock.h"
#include "desktops/posix/PollLoop.h"
#include "desktops/posix/SignalPipe.h"
#include "desktops/x11/LifeLine.h"
#include "desktops/x11/ServerQuestion.h"
#include "desktops/x11/Suspicion.h"

struct _XDisplay;

namespace tessarok::x11 {

/// The process that was started. It lets another one, the worker, hold the keyboards, and frees
/// them when the worker no longer can: stopped, hung or killed, it would leave a person without a
/// keyboard. Main thread.
///
/// Behaviour. The system tells a parent at once when its child ends or is stopped; that it hangs is
/// told by the alarm of the `LifeLine`, and confirmed by a `Suspicion`. A worker that is stopped or
/// hangs while it holds keyboards is killed, and with its connection the server lets them go.
/// Whenever the worker has ended, in whatever way, the synthetic keys that are still down are
/// released. Signals that are to end or stop the program are handed on to the worker, which has a
/// process group of its own: what stops all of the terminal's foreground group must not stop both.
class Watchdog final {
 public:
  /// What the worker does; returns its exit status.
  using Work = std::function<int(std::unique_ptr<LifeLine>)>;

  /// Runs `work` in a process of its own until that ends. Its exit status, or 128 and the number
  /// of the signal that ended it; absent when it did not start and was ended, which is said. To be
  /// called before the process has threads or a connection to the X server. Throws
  /// `std::system_error` when no process can be made.
  [[nodiscard]] static std::optional<int> watchOver(const Work& work);

  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;
  ~Watchdog();

  /// What goes over the line.
  static constexpr char kStarted = 's';
  static constexpr char kHeld = 'h';
  static constexpr char kFree = 'f';
  /// So long a turn of the worker's loop may take before it is looked at more closely.
  static constexpr long kAlarmMilliseconds = 250;

 private:
  Watchdog();

  void start(const Work& work);
  [[noreturn]] void become(const Work& work, posix::FileDescriptor line);
  void handle(int signal);
  void lookAtWorker();
  void workerStopped(int signal);
  void readLine();
  void hold();
  void connect();
  [[nodiscard]] bool isConnected();
  void suspect();
  [[nodiscard]] bool isAlarmRinging() const;
  void endWorker();
  void endUnlessStarted();
  void reportEnd() const;
  void releaseKeys();

  posix::MonotonicClock clock_;
  posix::PollLoop loop_{clock_};
  posix::FileDescriptor line_;
  posix::FileDescriptor alarm_;
  std::optional<posix::SignalPipe> signals_;
  std::optional<posix::CallbackSource> lineSource_;
  std::optional<posix::CallbackSource> alarmSource_;
  pid_t worker_ = -1;
  /// What waitpid said of the worker's end.
  int end_ = 0;
  /// For the release of keys only; null while none were held, and where the server let nobody in.
  /// Never closed; see `XConnection`.
  _XDisplay* display_ = nullptr;
  bool isConnectionLost_ = false;
  bool isStarted_ = false;
  bool isHeld_ = false;
  /// At some time; keys may be down that nobody would release.
  bool wasHeld_ = false;
  bool wasEnded_ = false;
  ServerQuestion question_;
  /// While the alarm rings.
  std::optional<Suspicion> suspicion_;
};

}  // namespace tessarok::x11

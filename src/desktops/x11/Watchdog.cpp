#include "desktops/x11/Watchdog.h"

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <cerrno>
#include <cstdlib>
#include <poll.h>
#include <signal.h>
#include <string.h>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/timerfd.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "desktops/posix/Translation.h"
#include "desktops/posix/WriteSignals.h"
#include "desktops/x11/DeviceKeys.h"

namespace tessarok::x11 {

namespace {

using posix::translated;

/// Seconds that the worker may take until it is ready. A server that does not answer would keep it
/// waiting for ever, as would the X library itself when the system fails it in the middle of an
/// answer. Nothing is held meanwhile, so this may be long enough for the busiest login.
constexpr int kStartPatience = 30;

[[noreturn]] void fail(const char* call) {
  throw std::system_error(errno, std::generic_category(), call);
}

/// Whether the work was done. Xlib may end the process, or crash, where the server goes in the
/// middle of a question.
template <typename Work>
bool inProcessOfItsOwn(const Work& work) {
  const pid_t process = ::fork();
  if (process < 0) return work();
  if (process == 0) ::_exit(work() ? EXIT_SUCCESS : EXIT_FAILURE);
  int status = 0;
  while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  return status == 0;
}

/// Not through a stream: what is on it is not for this process to flush.
void say(const std::string& message) {
  const auto line = "Tessarok: " + message + "\n";
  [[maybe_unused]] const auto written = ::write(STDERR_FILENO, line.data(), line.size());
}

}  // namespace

std::optional<int> Watchdog::watchOver(const Work& work) {
  posix::ignoreWriteSignals();
  Watchdog watchdog;
  watchdog.start(work);
  watchdog.loop_.run();
  // It may have ended with something said and not yet heard.
  watchdog.readLine();
  watchdog.reportEnd();
  watchdog.releaseKeys();
  if (watchdog.wasEnded_ && !watchdog.isStarted_) return std::nullopt;
  return WIFEXITED(watchdog.end_) ? WEXITSTATUS(watchdog.end_) : 128 + WTERMSIG(watchdog.end_);
}

Watchdog::Watchdog() = default;

Watchdog::~Watchdog() = default;

void Watchdog::start(const Work& work) {
  int ends[2];
  // A socket, because writing to one whose other end has gone can be made to raise no signal.
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) fail("socketpair");
  line_ = posix::FileDescriptor(ends[0]);
  posix::FileDescriptor otherEnd(ends[1]);
  alarm_ = posix::FileDescriptor(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK));
  if (!alarm_.isOpen()) fail("timerfd_create");
  // Before there is a worker whose end could be missed.
  signals_.emplace(std::initializer_list<int>{SIGCHLD, SIGTERM, SIGINT, SIGHUP, SIGQUIT, SIGTSTP},
                   [this](int signal) { handle(signal); });
  worker_ = ::fork();
  if (worker_ < 0) fail("fork");
  if (worker_ == 0) become(work, std::move(otherEnd));
  loop_.add(*signals_);
  lineSource_.emplace(
      line_.get(), [this] { return line_.isOpen() ? short{POLLIN} : short{0}; },
      [this](short) { readLine(); });
  loop_.add(*lineSource_);
  alarmSource_.emplace(
      alarm_.get(), [this] { return suspicion_ ? short{0} : short{POLLIN}; },
      [this](short) { suspect(); });
  loop_.add(*alarmSource_);
  loop_.after(kStartPatience, [this] { endUnlessStarted(); });
}

void Watchdog::become(const Work& work, posix::FileDescriptor line) {
  signals_.reset();
  static_cast<void>(line_.close());
  ::setpgid(0, 0);
  // Of a process outside the foreground group some terminals stop those that write to them.
  ::signal(SIGTTOU, SIG_IGN);
  std::exit(work(std::make_unique<LifeLine>(std::move(line), std::move(alarm_))));
}

void Watchdog::handle(int signal) {
  if (signal == SIGCHLD) return lookAtWorker();
  // The number of a process that has ended may be another's.
  if (!loop_.isStopped()) ::kill(worker_, signal);
}

void Watchdog::lookAtWorker() {
  int status = 0;
  while (::waitpid(worker_, &status, WNOHANG | WUNTRACED) == worker_) {
    if (WIFSTOPPED(status)) {
      workerStopped(WSTOPSIG(status));
      continue;
    }
    end_ = status;
    return loop_.stop();
  }
}

void Watchdog::workerStopped(int signal) {
  // What it said before.
  readLine();
  if (isHeld_) return endWorker();
  // From the terminal: the shell expects of this process to be stopped as well, and will continue
  // this one only.
  if (signal != SIGTSTP) return;
  ::raise(SIGSTOP);
  ::kill(worker_, SIGCONT);
}

void Watchdog::readLine() {
  char messages[64];
  ssize_t count = 0;
  while ((count = ::recv(line_.get(), messages, sizeof messages, MSG_DONTWAIT)) > 0) {
    for (const char message : std::string_view(messages, static_cast<std::size_t>(count))) {
      if (message == kStarted) isStarted_ = true;
      if (message == kHeld) hold();
      if (message == kFree) isHeld_ = false;
    }
  }
  // The worker has gone, or will soon; until then the descriptor has nothing more to tell.
  if (count == 0) static_cast<void>(line_.close());
}

void Watchdog::hold() {
  isHeld_ = true;
  if (std::exchange(wasHeld_, true)) return;
  // In good time: when it is needed, time is short.
  connect();
  // As Xlib does itself should the server go a moment earlier: without this process the worker lets
  // the keyboards go.
  if (display_ != nullptr && !isConnected()) std::exit(EXIT_FAILURE);
}

void Watchdog::connect() {
  isConnectionLost_ = false;
  display_ = XOpenDisplay(nullptr);
  if (display_ == nullptr) return;
  // The server may go first, and devices at any time; neither is to end this process.
  XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
  XSetIOErrorHandler([](Display*) { return 0; });
  XSetIOErrorExitHandler(
      display_, [](Display*, void* isLost) { *static_cast<bool*>(isLost) = true; },
      &isConnectionLost_);
  // Another program that holds the server is not to look like a server that does not answer.
  XTestGrabControl(display_, True);
}

bool Watchdog::isConnected() {
  // What the library answers when its server has gone is nothing to go by, and ends the process.
  if (display_ != nullptr && !isConnectionLost_) XSync(display_, False);
  return display_ != nullptr && !isConnectionLost_;
}

bool Watchdog::isAlarmRinging() const {
  pollfd alarm{alarm_.get(), POLLIN, 0};
  return ::poll(&alarm, 1, 0) == 1;
}

void Watchdog::suspect() {
  // Any turn of the worker's loop winds the alarm again, or stops it.
  if (!isAlarmRinging()) return suspicion_.reset();
  if (!suspicion_) suspicion_.emplace();
  const bool isAnswered = question_.isAnswered();
  if (suspicion_->isConfirmedBy({ThreadTimes::ofMainThread(worker_), isAnswered})) {
    return endWorker();
  }
  if (isAnswered && display_ != nullptr) question_.ask(display_);
  loop_.after(Suspicion::kInterval, [this] { suspect(); });
}

void Watchdog::endUnlessStarted() {
  readLine();
  if (!isStarted_) endWorker();
}

void Watchdog::endWorker() {
  wasEnded_ = true;
  ::kill(worker_, SIGKILL);
}

void Watchdog::reportEnd() const {
  if (wasEnded_ && !isStarted_) {
    return say(translated("not ready after {1} seconds; the X server does not seem to answer",
                          {std::to_string(kStartPatience)}));
  }
  if (wasEnded_) {
    return say(translated("the program did not answer and was ended; the keyboards are free"));
  }
  if (!WIFSIGNALED(end_)) return;
  const int signal = WTERMSIG(end_);
  const bool wasAsked =
      signal == SIGTERM || signal == SIGINT || signal == SIGHUP || signal == SIGQUIT;
  if (wasAsked) return;
  say(translated("the program was ended by signal {1} ({2}); the keyboards are free",
                 {std::to_string(signal), ::strsignal(signal)}));
}

void Watchdog::releaseKeys() {
  if (!wasHeld_) return;
  const auto release = [this] {
    if (!isConnected()) return false;
    releaseSyntheticKeys(display_);
    return !isConnectionLost_;
  };
  if (inProcessOfItsOwn(release)) return;
  // A connection may be lost that the server outlives.
  static_cast<void>(inProcessOfItsOwn([&] {
    connect();
    return release();
  }));
}

}  // namespace tessarok::x11

#include "platform/x11/Watchdog.h"

#include <X11/Xlib.h>
#include <cerrno>
#include <fcntl.h>
#include <initializer_list>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "platform/x11/DeviceKeys.h"

namespace tessarok::x11 {

namespace {

/// Seconds between two signs of life.
constexpr double kBeat = 0.1;
/// Without one for so long, and so many times in a row, the program is lost. Several short waits
/// instead of a long one: on a machine that is only slow the watchdog is slow as well.
constexpr int kPatienceMilliseconds = 150;
constexpr int kPatience = 4;

constexpr char kHeld = 'h';
constexpr char kFree = 'f';
constexpr char kAlive = '.';

/// The life of the watchdog process.
class Guard {
 public:
  Guard(int pipe, pid_t program) : pipe_(pipe), program_(program) {}

  void run() {
    for (const int signal : {SIGINT, SIGHUP, SIGQUIT, SIGTERM, SIGTSTP, SIGPIPE})
      ::signal(signal, SIG_IGN);
    while (!isOver_)
      wait();
    releaseKeys();
  }

 private:
  void wait() {
    pollfd waiting{pipe_, POLLIN, 0};
    const int count = ::poll(&waiting, 1, isHeld_ ? kPatienceMilliseconds : -1);
    if (count > 0) return readSigns();
    if (count < 0) {
      isOver_ = errno != EINTR;
      return;
    }
    if (++silence_ >= kPatience) endProgram();
  }

  void readSigns() {
    char signs[256];
    const auto count = ::read(pipe_, signs, sizeof signs);
    if (count < 0 && errno == EINTR) return;
    if (count <= 0) {
      isOver_ = true;
      return;
    }
    silence_ = 0;
    for (ssize_t i = 0; i < count; ++i) {
      if (signs[i] == kHeld) hold();
      if (signs[i] == kFree) isHeld_ = false;
    }
  }

  void hold() {
    isHeld_ = true;
    // Opened in good time: when it is needed, time is short.
    if (display_ == nullptr) display_ = XOpenDisplay(nullptr);
  }

  void endProgram() {
    constexpr char kMessage[] =
        "Tessarok: the program did not answer and was ended; the keyboards are free\n";
    ::kill(program_, SIGKILL);
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, kMessage, sizeof kMessage - 1);
    isOver_ = true;
  }

  void releaseKeys() {
    // Never held, so there is nothing to release.
    if (display_ == nullptr) return;
    releaseSyntheticKeys(display_);
    XCloseDisplay(display_);
  }

  int pipe_;
  pid_t program_;
  Display* display_ = nullptr;
  bool isHeld_ = false;
  bool isOver_ = false;
  int silence_ = 0;
};

}  // namespace

Watchdog::Watchdog() {
  int ends[2];
  // A socket, because writing to one whose other end has gone can be made to raise no signal.
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
    throw std::system_error(errno, std::generic_category(), "socketpair");
  }
  const auto program = ::getpid();
  process_ = ::fork();
  if (process_ < 0) throw std::system_error(errno, std::generic_category(), "fork");
  if (process_ == 0) {
    ::close(ends[0]);
    // What stops or ends the program from the terminal is not meant for this process.
    ::setpgid(0, 0);
    Guard(ends[1], program).run();
    ::_exit(0);
  }
  ::close(ends[1]);
  pipe_ = posix::FileDescriptor(ends[0]);
}

Watchdog::~Watchdog() {
  timer_.reset();
  if (pipe_.isOpen()) static_cast<void>(pipe_.close());
  if (process_ > 0) ::waitpid(process_, nullptr, 0);
}

bool Watchdog::send(char message) {
  return ::send(pipe_.get(), &message, 1, MSG_NOSIGNAL | MSG_DONTWAIT) == 1 || errno == EAGAIN;
}

bool Watchdog::start(posix::PollLoop& runLoop, std::function<void()> lost) {
  lost_ = std::move(lost);
  if (!send(kHeld)) return false;
  timer_ = runLoop.repeating(kBeat, 0, [this] { beat(); });
  return true;
}

void Watchdog::stop() {
  timer_.reset();
  static_cast<void>(send(kFree));
}

void Watchdog::beat() {
  if (send(kAlive)) return;
  // The callee may stop the timer that this is called by.
  const auto lost = lost_;
  lost();
}

}  // namespace tessarok::x11

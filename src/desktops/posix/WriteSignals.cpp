#include "desktops/posix/WriteSignals.h"

#include <array>
#include <cerrno>
#include <cstddef>

namespace tessarok::posix {

namespace {

constexpr std::array kSignals{SIGPIPE, SIGXFSZ};
/// Those that were ignored already when the program was started, as behind a shell's `trap ''`.
std::array<bool, kSignals.size()> wereIgnored{};

sigset_t writeSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : kSignals)
    sigaddset(&signals, signal);
  return signals;
}

}  // namespace

void ignoreWriteSignals() {
  for (std::size_t i = 0; i < kSignals.size(); ++i)
    wereIgnored[i] = ::signal(kSignals[i], SIG_IGN) == SIG_IGN;
}

void restoreWriteSignals() {
  for (std::size_t i = 0; i < kSignals.size(); ++i)
    ::signal(kSignals[i], wereIgnored[i] ? SIG_IGN : SIG_DFL);
}

WriteSignalsBlocked::WriteSignalsBlocked() {
  const auto signals = writeSignals();
  ::pthread_sigmask(SIG_BLOCK, &signals, &former_);
  ::sigpending(&pending_);
}

WriteSignalsBlocked::~WriteSignalsBlocked() {
  const int error = errno;
  sigset_t pending;
  ::sigpending(&pending);
  for (const int signal : kSignals) {
    // Whoever blocks a signal is the one to deal with it.
    const bool isOurs = sigismember(&pending, signal) == 1 && sigismember(&pending_, signal) != 1 &&
                        sigismember(&former_, signal) != 1;
    if (!isOurs) continue;
    sigset_t only;
    sigemptyset(&only);
    sigaddset(&only, signal);
    int taken = 0;
    ::sigwait(&only, &taken);
  }
  ::pthread_sigmask(SIG_SETMASK, &former_, nullptr);
  errno = error;
}

}  // namespace tessarok::posix

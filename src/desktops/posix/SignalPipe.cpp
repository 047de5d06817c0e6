#include "desktops/posix/SignalPipe.h"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace tessarok::posix {

namespace {

/// Where the signal handler writes, because a handler is given nothing but the signal.
volatile sig_atomic_t pipeOfHandler = -1;

extern "C" void writeSignal(int signal) {
  const int error = errno;
  const auto byte = static_cast<unsigned char>(signal);
  // A full pipe has the signal in it already, or a flood of others.
  while (::write(pipeOfHandler, &byte, 1) < 0 && errno == EINTR) {
  }
  errno = error;
}

}  // namespace

SignalPipe::SignalPipe(std::initializer_list<int> signals, Handler handler)
    : handler_(std::move(handler)) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
    throw std::system_error(errno, std::generic_category(), "pipe");
  }
  reader_ = FileDescriptor(ends[0]);
  writer_ = FileDescriptor(ends[1]);
  pipeOfHandler = ends[1];
  for (const int signal : signals)
    catchSignal(signal);
}

SignalPipe::~SignalPipe() {
  for (const auto& former : former_)
    ::sigaction(former.signal, &former.action, nullptr);
  pipeOfHandler = -1;
}

void SignalPipe::catchSignal(int signal) {
  Former former{signal, {}};
  if (::sigaction(signal, nullptr, &former.action) != 0) return;
  // A child's end is ignored by default and yet has to be heard of.
  if (former.action.sa_handler == SIG_IGN && signal != SIGCHLD) return;
  struct sigaction action {};
  action.sa_handler = &writeSignal;
  action.sa_flags = SA_RESTART;
  ::sigemptyset(&action.sa_mask);
  if (::sigaction(signal, &action, nullptr) == 0) former_.push_back(former);
}

short SignalPipe::events() const {
  return POLLIN;
}

void SignalPipe::ready(short) {
  unsigned char signals[64];
  const auto count = ::read(reader_.get(), signals, sizeof signals);
  for (ssize_t i = 0; i < count; ++i)
    handler_(signals[i]);
}

}  // namespace tessarok::posix

#include "desktops/posix/SignalPipe.h"

#include <cerrno>
#include <poll.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "desktops/posix/Pipe.h"

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
  auto pipe = openPipe(PipeMode::nonBlocking);
  if (!pipe) throw std::system_error(errno, std::generic_category(), "pipe");
  reader_ = std::move(pipe->reader);
  writer_ = std::move(pipe->writer);
  pipeOfHandler = writer_.get();
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
  // A macro on a Mac.
  sigemptyset(&action.sa_mask);
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

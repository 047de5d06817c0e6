#include <fcntl.h>
#include <unistd.h>

#include "desktops/posix/Pipe.h"

namespace tessarok::posix {

namespace {

bool prepare(int end, PipeMode mode) {
  if (::fcntl(end, F_SETFD, FD_CLOEXEC) != 0) return false;
  return mode == PipeMode::waiting || ::fcntl(end, F_SETFL, O_NONBLOCK) == 0;
}

}  // namespace

std::optional<Pipe> openPipe(PipeMode mode) {
  int ends[2];
  // There is no pipe2: a program that another thread starts meanwhile would have the ends.
  if (::pipe(ends) != 0) return std::nullopt;
  Pipe pipe{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
  if (!prepare(ends[0], mode) || !prepare(ends[1], mode)) return std::nullopt;
  return pipe;
}

}  // namespace tessarok::posix

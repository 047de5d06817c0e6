#include "desktops/posix/Pipe.h"

#include <fcntl.h>
#include <unistd.h>

namespace tessarok::posix {

std::optional<Pipe> openPipe(PipeMode mode) {
  int ends[2];
  const int flags = mode == PipeMode::nonBlocking ? O_CLOEXEC | O_NONBLOCK : O_CLOEXEC;
  if (::pipe2(ends, flags) != 0) return std::nullopt;
  return Pipe{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

}  // namespace tessarok::posix

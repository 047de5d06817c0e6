#include "desktops/posix/DescriptorWait.h"
#include "desktops/posix/SelectWait.h"

namespace tessarok::posix {

int waitFor(std::span<pollfd> descriptors, int milliseconds) {
  // There poll says of /dev/tty, and of other devices, that they are not open.
  return selectWait(descriptors, milliseconds);
}

}  // namespace tessarok::posix

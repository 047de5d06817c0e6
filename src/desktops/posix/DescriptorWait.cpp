#include "desktops/posix/DescriptorWait.h"

namespace tessarok::posix {

int waitFor(std::span<pollfd> descriptors, int milliseconds) {
  return ::poll(descriptors.data(), descriptors.size(), milliseconds);
}

}  // namespace tessarok::posix

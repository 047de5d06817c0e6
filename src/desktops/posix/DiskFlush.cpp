#include "desktops/posix/DiskFlush.h"

#include <unistd.h>

namespace tessarok::posix {

bool flushToDisk(int descriptor) {
  return ::fsync(descriptor) == 0;
}

}  // namespace tessarok::posix

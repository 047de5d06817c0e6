#include <fcntl.h>
#include <unistd.h>

#include "desktops/posix/DiskFlush.h"

namespace tessarok::posix {

bool flushToDisk(int descriptor) {
  // There fsync leaves the data in the drive's own memory. Not every file system can do more.
  return ::fcntl(descriptor, F_FULLFSYNC) == 0 || ::fsync(descriptor) == 0;
}

}  // namespace tessarok::posix

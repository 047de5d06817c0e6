#pragma once

namespace tessarok::posix {

/// Waits until what was written to an open file or folder would survive a power failure. False
/// leaves errno. One file a system: DiskFlush.cpp, DiskFlushMac.cpp.
[[nodiscard]] bool flushToDisk(int descriptor);

}  // namespace tessarok::posix

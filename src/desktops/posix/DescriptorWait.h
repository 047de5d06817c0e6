#pragma once

#include <poll.h>
#include <span>

namespace tessarok::posix {

/// Waits until a descriptor is ready for what is awaited of it, as poll(2) does, on systems whose
/// poll does not serve terminals too: entries below 0 are passed over; the answer is the number of
/// entries with `revents`, 0 after so many milliseconds, and -1 for an error in errno. Below 0 the
/// time has no end. Hanging up is seen as input or room where either is awaited, and else not.
[[nodiscard]] int waitFor(std::span<pollfd> descriptors, int milliseconds);

}  // namespace tessarok::posix

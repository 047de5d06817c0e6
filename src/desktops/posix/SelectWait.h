#pragma once

#include <poll.h>
#include <span>

namespace tessarok::posix {

/// poll(2) by means of select(2), which serves every kind of descriptor everywhere: as
/// `waitFor`.
[[nodiscard]] int selectWait(std::span<pollfd> descriptors, int milliseconds);

}  // namespace tessarok::posix

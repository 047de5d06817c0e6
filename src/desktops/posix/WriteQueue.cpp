#include "desktops/posix/WriteQueue.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <unistd.h>

#include "desktops/posix/DescriptorWait.h"

namespace tessarok::posix {

namespace {

/// What poll promises that a pipe takes without blocking, and more than a terminal takes at once.
constexpr std::size_t kChunk = 4096;

}  // namespace

bool WriteQueue::flush() {
  return flush(0);
}

bool WriteQueue::flushWaiting() {
  return flush(-1);
}

bool WriteQueue::flush(int milliseconds) {
  auto step = Step::progress;
  while (!broken_ && !isEmpty() && step == Step::progress)
    step = writeSome(milliseconds);
  if (step == Step::broken) broken_ = true;
  if (isEmpty() || broken_) {
    bytes_.clear();
    done_ = 0;
  } else if (done_ > bytes_.size() / 2) {
    bytes_.erase(0, done_);
    done_ = 0;
  }
  return !broken_;
}

WriteQueue::Step WriteQueue::writeSome(int milliseconds) {
  if (mode_ == Mode::any || milliseconds != 0) {
    pollfd waiting{descriptor_, POLLOUT, 0};
    const int count = waitFor({&waiting, 1}, milliseconds);
    if (count < 0) return errno == EINTR ? Step::progress : Step::broken;
    if (count == 0) return Step::wouldBlock;
  }
  const auto size = std::min(bytes_.size() - done_, kChunk);
  const auto written = ::write(descriptor_, bytes_.data() + done_, size);
  if (written >= 0) {
    done_ += static_cast<std::size_t>(written);
    return Step::progress;
  }
  if (errno == EINTR) return Step::progress;
  return errno == EAGAIN ? Step::wouldBlock : Step::broken;
}

}  // namespace tessarok::posix

#include "Progress.h"

#include <cstdio>
#include <iostream>
#include <unistd.h>

namespace tessarok::measure {

namespace {

constexpr std::chrono::milliseconds kInterval(200);

}  // namespace

Progress::Progress() : isTerminal_(::isatty(STDERR_FILENO) != 0) {}

Progress::~Progress() {
  if (isShown_) std::cerr << "\r\033[K";
}

void Progress::show(std::size_t done, std::size_t all) {
  const auto now = Clock::now();
  if (!isTerminal_ || all == 0 || now - lastShown_ < kInterval) return;
  lastShown_ = now;
  isShown_ = true;
  std::cerr << "\r\033[K" << done << " of " << all << " sentences, " << done * 100 / all << " %";
  if (done > 0) {
    const auto elapsed = std::chrono::duration<double>(now - start_).count();
    const auto left = elapsed * static_cast<double>(all - done) / static_cast<double>(done);
    std::cerr << ", about " << static_cast<long>(left) + 1 << " s left";
  }
  std::cerr << std::flush;
}

}  // namespace tessarok::measure

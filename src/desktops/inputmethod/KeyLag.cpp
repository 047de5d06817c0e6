#include "desktops/inputmethod/KeyLag.h"

#include <algorithm>
#include <cstdint>

namespace tessarok::inputmethod {

namespace {

/// What remains of the latest key's lag with every key.
constexpr double kForgetting = 0.95;
/// Seconds of lag that no program has: the other clock is another one now, or has begun anew.
constexpr double kImpossible = 30;

}  // namespace

void KeyLag::keyCame(int time, double now) {
  if (time == 0) return;
  const double offset = now - static_cast<std::uint32_t>(time) / 1000.0;
  if (!offset_ || offset < *offset_ || offset > *offset_ + kImpossible) offset_ = offset;
  latest_ = std::max(offset - *offset_, latest_ * kForgetting);
}

}  // namespace tessarok::inputmethod

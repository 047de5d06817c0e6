#pragma once

#include <cstdlib>

namespace tessarok {

/// `a + b` for counters; stops the program rather than wrap, because a wrapped count would go on
/// to erase the wrong text.
template <typename Integer>
[[nodiscard]] Integer checkedAdd(Integer a, Integer b) {
  Integer sum;
  if (__builtin_add_overflow(a, b, &sum)) std::abort();
  return sum;
}

}  // namespace tessarok

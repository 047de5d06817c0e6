#pragma once

#include <cstdio>
#include <cstdlib>

namespace tessarok::fuzz {

/// Stops the program, and with it the fuzzer, at a statement about the code that does not hold.
inline void check(bool holds, const char* statement) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", statement);
  std::abort();
}

}  // namespace tessarok::fuzz

#pragma once

#include <chrono>
#include <string>
#include <thread>

namespace tessarok::testing {

/// How long a slow machine may take before a test gives up, seconds.
inline constexpr double kPatience = 20;

/// Waits until `condition` holds; whether it does in the end.
template <typename Condition>
[[nodiscard]] bool waitUntil(Condition condition, double patience = kPatience) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + std::chrono::duration<double>(patience);
  while (!condition()) {
    if (Clock::now() > end) return condition();
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

/// Waits until `read` gives `expected`; whether it does in the end. A slow machine that gets on is
/// waited for: given up is what has not changed for so many seconds.
template <typename Read>
[[nodiscard]] bool waitUntilGives(Read read, const std::string& expected,
                                  double patience = kPatience) {
  auto last = read();
  while (last != expected) {
    std::string next;
    const auto changed = [&] { return (next = read()) != last; };
    if (!waitUntil(changed, patience)) return false;
    last = next;
  }
  return true;
}

}  // namespace tessarok::testing

#pragma once

#include <chrono>
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

}  // namespace tessarok::testing

#pragma once

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <functional>
#include <limits>
#include <string>
#include <string_view>

/// How the time of an operation grows with its input, said in a way that holds on any machine:
/// against the same operation on less of the same input, a moment ago, in processor time.
namespace tessarok::testing {

/// The pattern over and over, until there are `size` bytes or a few more.
[[nodiscard]] inline std::string repeated(std::string_view pattern, std::size_t size) {
  std::string text;
  text.reserve(size + pattern.size());
  while (text.size() < size)
    text += pattern;
  return text;
}

/// Processor time of this process; in seconds.
[[nodiscard]] inline double processorTimeOf(const std::function<void()>& work) {
  const auto begin = std::clock();
  work();
  return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

/// How many times as long a byte takes in `kLong` bytes of the pattern as in `kShort`. 1 is what
/// is hoped for; 16 is what an operation comes to that grows with the square. Caches, memory and
/// interruptions of this process make it more, so the best of several tries counts.
class Growth {
 public:
  static constexpr std::size_t kShort = 2048;
  static constexpr std::size_t kLong = 16 * kShort;
  /// More than this is super-linear.
  static constexpr double kMost = 5;
  static constexpr int kTries = 4;

  using Operation = std::function<void(std::string_view text)>;

  [[nodiscard]] static double of(std::string_view pattern, const Operation& operation) {
    const auto little = repeated(pattern, kShort);
    const auto much = repeated(pattern, kLong);
    double least = std::numeric_limits<double>::infinity();
    for (int i = 0; i < kTries && least > kMost; ++i)
      least = std::min(least, ratio(little, much, operation));
    return least;
  }

 private:
  /// Both sides go over the same number of bytes, so that the clock is as coarse for both.
  static double ratio(std::string_view little, std::string_view much, const Operation& operation) {
    const auto shortTime = processorTimeOf([&] {
      for (std::size_t done = 0; done < much.size(); done += little.size())
        operation(little);
    });
    const auto longTime = processorTimeOf([&] { operation(much); });
    // The clock counts in millionths; less than a few hundred of them tell nothing.
    constexpr double kLeast = 0.0005;
    return longTime / std::max(shortTime, kLeast);
  }
};

}  // namespace tessarok::testing

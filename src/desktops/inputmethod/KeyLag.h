#pragma once

#include <optional>

namespace tessarok::inputmethod {

/// How late keys come from a program that hands them to the framework itself, which is how far it
/// is behind with all else that it is sent. Keys carry the time at which they were pressed; by a
/// clock that is not known, so the one that came the soonest counts as on time. Main thread.
class KeyLag final {
 public:
  /// A key came that was pressed at `time`, in milliseconds that may begin anew; 0 says nothing.
  void keyCame(int time, double now);
  /// Seconds by which the latest key of late came later than the soonest one.
  [[nodiscard]] double latest() const { return latest_; }

 private:
  /// Between the two clocks, with the key that came the soonest.
  std::optional<double> offset_;
  double latest_ = 0;
};

}  // namespace tessarok::inputmethod

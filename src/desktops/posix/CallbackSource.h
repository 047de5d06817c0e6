#pragma once

#include <functional>
#include <utility>

#include "desktops/posix/PollSource.h"

namespace tessarok::posix {

/// A file descriptor served by two functions. Main thread.
class CallbackSource final : public PollSource {
 public:
  /// The functions are those of `PollSource`, and `isReady` may be empty; the descriptor is not
  /// owned.
  CallbackSource(int descriptor, std::function<short()> events, std::function<void(short)> ready,
                 std::function<bool()> isReady = {})
      : descriptor_(descriptor),
        events_(std::move(events)),
        ready_(std::move(ready)),
        isReady_(std::move(isReady)) {}

  [[nodiscard]] int descriptor() const override { return descriptor_; }
  [[nodiscard]] short events() const override { return events_(); }
  [[nodiscard]] bool isReady() const override { return isReady_ && isReady_(); }
  void ready(short events) override { ready_(events); }

 private:
  int descriptor_;
  std::function<short()> events_;
  std::function<void(short)> ready_;
  std::function<bool()> isReady_;
};

}  // namespace tessarok::posix

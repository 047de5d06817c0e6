#pragma once

#include <dispatch/dispatch.h>
#include <functional>
#include <vector>

namespace tessarok::macos {

/// Turns the signals that ask a process to end into a call on the main queue, so that it ends as
/// by the menu, with everything learned on the disk. Main thread.
///
/// A signal that the process was started with to ignore, as `nohup` does, stays ignored.
class TerminationSignals final {
 public:
  explicit TerminationSignals(std::function<void()> terminate);
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;
  /// The signals end the process at once again.
  ~TerminationSignals();

 private:
  static void receive(void* context);

  struct Source {
    int signal;
    dispatch_source_t source;
  };
  std::function<void()> terminate_;
  std::vector<Source> sources_;
};

}  // namespace tessarok::macos

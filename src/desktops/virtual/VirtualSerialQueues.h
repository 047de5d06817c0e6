#pragma once

#include <memory>
#include <string>
#include <vector>

#include "desktops/posix/ThreadQueue.h"
#include "platform/SerialQueues.h"

namespace tessarok::virtualdesktop {

/// Queues with a thread each, as elsewhere, that can be waited for together: what a turn has asked
/// of them is done when the next one begins, so that every run is the same. Main thread.
class VirtualSerialQueues final : public platform::SerialQueues {
 public:
  std::unique_ptr<platform::SerialQueue> create(const std::string& label) override;
  /// Waits until no queue has anything to do.
  void drain();

 private:
  class Queue;

  /// The queues outlive this object: what uses them lives as long as the process.
  std::vector<std::weak_ptr<posix::ThreadQueue>> queues_;
};

}  // namespace tessarok::virtualdesktop

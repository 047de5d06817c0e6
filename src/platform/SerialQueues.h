#pragma once

#include <memory>
#include <string>

#include "platform/SerialQueue.h"

namespace tessarok::platform {

/// Makes the queues that keep the disk away from the main thread. Main thread.
class SerialQueues {
 public:
  virtual ~SerialQueues() = default;
  /// `label` is for people who look at the process with a debugger. Never null.
  [[nodiscard]] virtual std::unique_ptr<SerialQueue> create(const std::string& label) = 0;
};

}  // namespace tessarok::platform

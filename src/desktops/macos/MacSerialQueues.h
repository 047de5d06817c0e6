#pragma once

#include "platform/SerialQueues.h"

namespace tessarok::macos {

/// Serial queues of Dispatch, of default quality of service.
class MacSerialQueues final : public platform::SerialQueues {
 public:
  std::unique_ptr<platform::SerialQueue> create(const std::string& label) override;
};

}  // namespace tessarok::macos

#pragma once

#include "platform/SystemLog.h"

namespace tessarok::macos {

/// The unified log, as Console shows it.
class MacSystemLog final : public platform::SystemLog {
 public:
  void write(std::string_view message) override;
};

}  // namespace tessarok::macos

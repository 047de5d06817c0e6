#pragma once

#include "platform/SystemLog.h"

namespace tessarok::posix {

/// The system log of a program in a terminal: standard error, a line a message.
class StandardErrorLog final : public platform::SystemLog {
 public:
  void write(std::string_view message) override;
};

}  // namespace tessarok::posix

#pragma once

#include "platform/EventTaps.h"

namespace tessarok::macos {

/// Creates Quartz event taps.
class MacEventTaps final : public platform::EventTaps {
 public:
  std::unique_ptr<platform::EventTap> create(std::uint64_t mask,
                                             platform::EventTapCallback callback,
                                             void* userData) override;
  bool preflightPostAccess() override;
};

}  // namespace tessarok::macos

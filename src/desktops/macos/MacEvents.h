#pragma once

#include "platform/Events.h"

namespace tessarok::macos {

/// Makes Quartz events.
class MacEvents final : public platform::Events {
 public:
  std::unique_ptr<platform::EventSource> createPrivateSource() override;
  std::unique_ptr<platform::Event> createKeyboardEvent(platform::EventSource& source,
                                                       std::int64_t keyCode, bool keyDown) override;
};

}  // namespace tessarok::macos

#pragma once

#include <memory>
#include <utility>

#include "desktops/plain/PlainEvents.h"
#include "desktops/virtual/VirtualEvent.h"

namespace tessarok::virtualdesktop {

/// Creates events, or fails once when told so. Main thread.
class VirtualEvents final : public plain::PlainEvents<VirtualEvent> {
 public:
  std::unique_ptr<platform::EventSource> createPrivateSource() override {
    if (std::exchange(failsNextSource, false)) return nullptr;
    return PlainEvents::createPrivateSource();
  }
  std::unique_ptr<platform::Event> createKeyboardEvent(platform::EventSource& source,
                                                       std::int64_t keyCode,
                                                       bool keyDown) override {
    if (std::exchange(failsNextEvent, false)) return nullptr;
    return PlainEvents::createKeyboardEvent(source, keyCode, keyDown);
  }
  bool failsNextSource = false;
  bool failsNextEvent = false;
};

}  // namespace tessarok::virtualdesktop

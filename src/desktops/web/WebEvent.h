#pragma once

#include <memory>

#include "desktops/plain/PlainEvent.h"

namespace tessarok::web {

/// A key of the page, or one that the program makes. Main thread.
class WebEvent final : public plain::PlainEvent {
 public:
  WebEvent() = default;
  WebEvent(const WebEvent&) = default;
  WebEvent& operator=(const WebEvent&) = delete;

  std::unique_ptr<platform::Event> copy() const override {
    return std::make_unique<WebEvent>(*this);
  }
};

}  // namespace tessarok::web

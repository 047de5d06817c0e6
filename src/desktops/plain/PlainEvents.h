#pragma once

#include <concepts>
#include <cstdint>
#include <memory>

#include "desktops/plain/PlainEvent.h"
#include "desktops/plain/PlainEventSource.h"
#include "platform/Events.h"

namespace tessarok::plain {

/// Makes the events of a desktop whose events are plain values. Main thread.
template <std::derived_from<PlainEvent> Event>
class PlainEvents : public platform::Events {
 public:
  std::unique_ptr<platform::EventSource> createPrivateSource() override {
    return std::make_unique<PlainEventSource>();
  }
  std::unique_ptr<platform::Event> createKeyboardEvent(platform::EventSource&, std::int64_t keyCode,
                                                       bool keyDown) override {
    auto event = std::make_unique<Event>();
    event->type = keyDown ? platform::EventType::keyDown : platform::EventType::keyUp;
    event->code = keyCode;
    prepare(*event);
    return event;
  }

 protected:
  /// Adds to a new event what this desktop has to know besides.
  virtual void prepare(Event&) {}
};

}  // namespace tessarok::plain

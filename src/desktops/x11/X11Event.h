#pragma once

#include <cstdint>
#include <memory>

#include "desktops/plain/PlainEvent.h"

namespace tessarok::x11 {

/// A key or a button of the hardware, or a key that the program makes. Main thread.
class X11Event final : public plain::PlainEvent {
 public:
  X11Event() = default;
  X11Event(const X11Event&) = default;
  X11Event& operator=(const X11Event&) = delete;

  std::unique_ptr<platform::Event> copy() const override {
    return std::make_unique<X11Event>(*this);
  }

  /// The key on the X server; 0 for text.
  std::uint8_t xKey = 0;
};

}  // namespace tessarok::x11

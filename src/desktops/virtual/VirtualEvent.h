#pragma once

#include <memory>

#include "desktops/plain/PlainEvent.h"

namespace tessarok::virtualdesktop {

/// An event of the virtual desktop.
class VirtualEvent final : public plain::PlainEvent {
 public:
  VirtualEvent() = default;
  VirtualEvent(const VirtualEvent&) = default;

  std::unique_ptr<platform::Event> copy() const override {
    return std::make_unique<VirtualEvent>(*this);
  }

  /// The program posted it, rather than the person.
  bool posted = false;
};

}  // namespace tessarok::virtualdesktop

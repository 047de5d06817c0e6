#pragma once

#include <functional>
#include <memory>
#include <systemd/sd-bus.h>
#include <utility>

namespace tessarok::freedesktop {

/// Something that a bus does for its owner until the slot goes: a subscription, an exported
/// object, the wait for an answer. Main thread.
class BusSlot final {
 public:
  using Handler = std::function<void(sd_bus_message& message)>;

  BusSlot() = default;
  BusSlot(std::unique_ptr<Handler> handler, sd_bus_slot* slot)
      : handler_(std::move(handler)), slot_(slot) {}
  BusSlot(BusSlot&& other) noexcept
      : handler_(std::move(other.handler_)), slot_(std::exchange(other.slot_, nullptr)) {}
  BusSlot& operator=(BusSlot&& other) noexcept {
    std::swap(handler_, other.handler_);
    std::swap(slot_, other.slot_);
    return *this;
  }
  ~BusSlot() { sd_bus_slot_unref(slot_); }

  [[nodiscard]] explicit operator bool() const { return slot_ != nullptr; }

 private:
  std::unique_ptr<Handler> handler_;
  sd_bus_slot* slot_ = nullptr;
};

}  // namespace tessarok::freedesktop

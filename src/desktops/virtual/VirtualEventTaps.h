#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "desktops/virtual/VirtualEvent.h"
#include "platform/EventTaps.h"

namespace tessarok::virtualdesktop {

/// The event stream of the virtual desktop: hardware events go through the tap, when there is one
/// that works, to the application, and what the tap's callback posts follows at once.
class VirtualEventTaps final : public platform::EventTaps {
 public:
  /// Called for every event that reaches the application.
  using Delivery = std::function<void(const VirtualEvent&)>;

  explicit VirtualEventTaps(Delivery deliver);
  ~VirtualEventTaps() override;

  std::unique_ptr<platform::EventTap> create(std::uint64_t mask,
                                             platform::EventTapCallback callback,
                                             void* userData) override;
  bool preflightPostAccess() override { return trusted_; }

  /// Sends a hardware event on its way.
  void send(VirtualEvent& event);
  void setTrusted(bool trusted);
  /// The system disables the tap and tells it so.
  void disableWithPseudoEvent(platform::EventType type);
  /// The system disables the tap without a word.
  void disable();
  /// Keys bypass the tap until it is created again.
  void deafen();

  /// Called for every event that the program posts, before it is on its way.
  Delivery onPosted;

 private:
  class Tap;
  class Proxy;

  [[nodiscard]] bool reachesTap(const VirtualEvent& event) const;
  void route(VirtualEvent& event);

  Delivery deliver_;
  std::unique_ptr<Proxy> proxy_;
  Tap* tap_ = nullptr;
  bool trusted_ = true;
  std::deque<VirtualEvent> posted_;
};

}  // namespace tessarok::virtualdesktop

#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/EventTaps.h"
#include "platform/terminal/TerminalEvent.h"

namespace tessarok::terminal {

/// The way of the keys of one terminal: through the tap, when there is one, to the program, with
/// what the tap's callback posts right behind. Main thread.
class TerminalEventTaps final : public platform::EventTaps {
 public:
  /// Called for every event that reaches the program.
  using Delivery = std::function<void(const TerminalEvent&)>;

  TerminalEventTaps();
  ~TerminalEventTaps() override;

  /// The callback gets every kind of event that a terminal has, whatever the mask.
  std::unique_ptr<platform::EventTap> create(std::uint64_t mask,
                                             platform::EventTapCallback callback,
                                             void* userData) override;
  bool preflightPostAccess() override { return true; }

  void setDelivery(Delivery deliver) { deliver_ = std::move(deliver); }
  /// Sends a key on its way: the press and, because a terminal knows none, its release.
  void press(TerminalEvent& event);

 private:
  class Tap;
  class Proxy;

  void send(TerminalEvent& event);
  void route(TerminalEvent& event);

  Delivery deliver_;
  std::unique_ptr<Proxy> proxy_;
  Tap* tap_ = nullptr;
  std::vector<TerminalEvent> posted_;
};

}  // namespace tessarok::terminal

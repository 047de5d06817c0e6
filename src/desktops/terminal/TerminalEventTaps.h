#pragma once

#include <functional>
#include <utility>

#include "desktops/plain/PlainEventTaps.h"
#include "desktops/terminal/TerminalEvent.h"

namespace tessarok::terminal {

/// The way of the keys of one terminal: through the tap, when there is one, to the program, with
/// what the tap's callback posts right behind. Main thread.
class TerminalEventTaps final : public plain::PlainEventTaps<TerminalEvent> {
 public:
  /// Called for every event that reaches the program.
  using Delivery = std::function<void(const TerminalEvent&)>;

  void setDelivery(Delivery deliver) { deliver_ = std::move(deliver); }
  /// Sends a key on its way: the press and, because a terminal knows none, its release.
  void press(TerminalEvent& event);

 private:
  void send(TerminalEvent& event);
  void deliver(const TerminalEvent& event) const;

  Delivery deliver_;
};

}  // namespace tessarok::terminal

#include "desktops/terminal/TerminalEventTaps.h"

namespace tessarok::terminal {

void TerminalEventTaps::press(TerminalEvent& event) {
  send(event);
  event.type = platform::EventType::keyUp;
  send(event);
}

void TerminalEventTaps::send(TerminalEvent& event) {
  if (show(event)) deliver(event);
  showPosted([this](const TerminalEvent& posted) { deliver(posted); });
}

void TerminalEventTaps::deliver(const TerminalEvent& event) const {
  if (deliver_) deliver_(event);
}

}  // namespace tessarok::terminal

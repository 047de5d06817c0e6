#include "platform/terminal/TerminalEvent.h"

#include <algorithm>

namespace tessarok::terminal {

std::size_t TerminalEvent::unicodeString(std::span<char16_t> units) const {
  std::copy_n(payload.begin(), std::min(units.size(), payload.size()), units.begin());
  return payload.size();
}

std::unique_ptr<platform::Event> TerminalEvent::copy() const {
  return std::make_unique<TerminalEvent>(*this);
}

void TerminalEvent::become(std::int64_t newCode, std::uint64_t newModifiers) {
  type = platform::EventType::keyDown;
  code = newCode;
  modifiers = newModifiers;
  userData = 0;
  payload.clear();
  bytes.clear();
}

}  // namespace tessarok::terminal

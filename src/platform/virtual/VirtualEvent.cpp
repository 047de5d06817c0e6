#include "platform/virtual/VirtualEvent.h"

#include <algorithm>

namespace tessarok::virtualdesktop {

std::size_t VirtualEvent::unicodeString(std::span<char16_t> units) const {
  std::copy_n(payload.begin(), std::min(units.size(), payload.size()), units.begin());
  return payload.size();
}

std::unique_ptr<platform::Event> VirtualEvent::copy() const {
  return std::make_unique<VirtualEvent>(*this);
}

}  // namespace tessarok::virtualdesktop

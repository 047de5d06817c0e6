#include "platform/x11/X11Event.h"

#include <algorithm>

namespace tessarok::x11 {

std::size_t X11Event::unicodeString(std::span<char16_t> units) const {
  std::copy_n(payload.begin(), std::min(units.size(), payload.size()), units.begin());
  return payload.size();
}

std::unique_ptr<platform::Event> X11Event::copy() const {
  return std::make_unique<X11Event>(*this);
}

}  // namespace tessarok::x11

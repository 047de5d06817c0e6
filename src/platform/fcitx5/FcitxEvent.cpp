#include "platform/fcitx5/FcitxEvent.h"

#include <algorithm>

namespace tessarok::fcitx5 {

std::size_t FcitxEvent::unicodeString(std::span<char16_t> units) const {
  std::copy_n(payload.begin(), std::min(units.size(), payload.size()), units.begin());
  return payload.size();
}

std::unique_ptr<platform::Event> FcitxEvent::copy() const {
  return std::make_unique<FcitxEvent>(*this);
}

}  // namespace tessarok::fcitx5

#include "desktops/macos/MacInputSource.h"

#include <algorithm>
#include <array>

#include "desktops/macos/CfString.h"

namespace tessarok::macos {

namespace {

/// The header and first table of a layout; `UCKeyTranslate` trusts what it is given.
constexpr CFIndex kShortestLayoutData = 40;
/// The Carbon modifier state, shifted right by eight.
constexpr UInt32 kNoModifiers = 0;
constexpr UInt32 kShift = 2;
constexpr std::size_t kRoom = 8;

}  // namespace

std::optional<std::string> MacInputSource::identifier() const {
  return cfString::text(TISGetInputSourceProperty(get(), kTISPropertyInputSourceID));
}

bool MacInputSource::hasLayoutData() const {
  return layout() != nullptr;
}

const UCKeyboardLayout* MacInputSource::layout() const {
  const void* property = TISGetInputSourceProperty(get(), kTISPropertyUnicodeKeyLayoutData);
  if (property == nullptr || CFGetTypeID(property) != CFDataGetTypeID()) return nullptr;
  const auto data = static_cast<CFDataRef>(property);
  if (CFDataGetLength(data) < kShortestLayoutData) return nullptr;
  return reinterpret_cast<const UCKeyboardLayout*>(CFDataGetBytePtr(data));
}

std::u16string MacInputSource::translate(std::uint16_t keyCode, bool shift,
                                         std::uint32_t keyboardType) const {
  const auto* keyLayout = layout();
  if (keyLayout == nullptr) return {};
  UInt32 deadKeyState = 0;
  std::array<UniChar, kRoom> units{};
  UniCharCount length = 0;
  const auto status = UCKeyTranslate(
      keyLayout, keyCode, kUCKeyActionDisplay, shift ? kShift : kNoModifiers, keyboardType,
      kUCKeyTranslateNoDeadKeysMask, &deadKeyState, units.size(), &length, units.data());
  if (status != 0) return {};
  const auto count = std::min<std::size_t>(length, units.size());
  return {units.begin(), units.begin() + static_cast<std::ptrdiff_t>(count)};
}

}  // namespace tessarok::macos

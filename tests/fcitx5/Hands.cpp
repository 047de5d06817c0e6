#include "fcitx5/Hands.h"

#include <stdexcept>
#include <thread>

#include "KeyCodes.h"
#include "platform/layouts/KeyTable.h"
#include "platform/xkb/HardwareKeys.h"

namespace tessarok::testing {

namespace {

constexpr unsigned kShift = 50;

layouts::KeyTable::Stroke strokeOf(char character) {
  switch (character) {
    case '\n':
      return {keyCodes::returnKey, false};
    case '\t':
      return {keyCodes::tab, false};
    case '\b':
      return {keyCodes::backspace, false};
    case ' ':
      return {keyCodes::space, false};
    default:
      break;
  }
  const auto byte = static_cast<unsigned char>(character);
  const auto stroke = layouts::KeyTable::english().strokeFor(byte);
  if (!stroke || byte >= 0x80) throw std::runtime_error("no key types this");
  return *stroke;
}

}  // namespace

void Hands::type(std::string_view text, std::chrono::milliseconds interval) {
  auto next = std::chrono::steady_clock::now();
  for (const char character : text) {
    const auto stroke = strokeOf(character);
    const unsigned xKey = xkb::hardwareKeys::xKeyOf(stroke.code);
    if (stroke.shift) key(kShift, true);
    key(xKey, true);
    key(xKey, false);
    if (stroke.shift) key(kShift, false);
    flush();
    if (interval.count() == 0) continue;
    next += interval;
    std::this_thread::sleep_until(next);
  }
}

}  // namespace tessarok::testing

#include "tests/desktops/fcitx5/Hands.h"

#include <thread>

#include "desktops/xkb/HardwareKeys.h"
#include "tests/desktops/x11/KeyCodes.h"
#include "tests/desktops/xkb/StrokeOf.h"

namespace tessarok::testing {

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

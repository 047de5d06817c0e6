#include "desktops/x11/DeviceKeys.h"

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/extensions/XInput.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/XTest.h>
#include <string_view>

namespace tessarok::x11 {

std::vector<std::uint8_t> keysDown(Display* display, int device) {
  auto* opened = XOpenDevice(display, static_cast<XID>(device));
  if (opened == nullptr) return {};
  std::vector<std::uint8_t> keys;
  if (auto* state = XQueryDeviceState(display, opened)) {
    const auto* part = state->data;
    for (int i = 0; i < state->num_classes; ++i) {
      if (part->c_class == KeyClass) {
        const auto* keyState = reinterpret_cast<const XKeyState*>(part);
        for (unsigned key = 0; key < 256; ++key) {
          const auto byte = static_cast<unsigned char>(keyState->keys[key / 8]);
          if ((byte >> (key % 8) & 1u) != 0) keys.push_back(static_cast<std::uint8_t>(key));
        }
      }
      part =
          reinterpret_cast<const XInputClass*>(reinterpret_cast<const char*>(part) + part->length);
    }
    XFreeDeviceState(state);
  }
  XCloseDevice(display, opened);
  return keys;
}

KeyboardPair findKeyboards(Display* display) {
  int count = 0;
  auto* devices = XIQueryDevice(display, XIAllDevices, &count);
  KeyboardPair pair;
  for (int i = 0; i < count; ++i) {
    if (devices[i].use != XISlaveKeyboard && devices[i].use != XIFloatingSlave) continue;
    const bool isSynthetic =
        std::string_view(devices[i].name).find("XTEST") != std::string_view::npos;
    auto& place = isSynthetic ? pair.synthetic : pair.real;
    if (place == 0) place = devices[i].deviceid;
  }
  if (devices != nullptr) XIFreeDeviceInfo(devices);
  return pair;
}

void releaseSyntheticKeys(Display* display) {
  const auto keyboards = findKeyboards(display);
  if (keyboards.synthetic == 0) return;
  for (const auto key : keysDown(display, keyboards.synthetic)) {
    XTestFakeKeyEvent(display, key, False, CurrentTime);
  }
  if (keyboards.real != 0) copyRepeatRate(display, keyboards.real, keyboards.synthetic);
  XSync(display, False);
}

void copyRepeatRate(Display* display, int from, int to) {
  unsigned delay = 0;
  unsigned interval = 0;
  if (XkbGetAutoRepeatRate(display, static_cast<unsigned>(from), &delay, &interval) == 0) return;
  XkbSetAutoRepeatRate(display, static_cast<unsigned>(to), delay, interval);
}

}  // namespace tessarok::x11

#pragma once

#include <cstdint>
#include <vector>

struct _XDisplay;

/// Questions about single input devices, asked by the program and by its watchdog.
namespace tessarok::x11 {

/// The X key codes that are down on a device; empty also when the device does not answer.
[[nodiscard]] std::vector<std::uint8_t> keysDown(_XDisplay* display, int device);
/// The keyboard through which synthetic keys come, 0 when there is none, and one that is not it.
struct KeyboardPair {
  int synthetic = 0;
  int real = 0;
};
[[nodiscard]] KeyboardPair findKeyboards(_XDisplay* display);
/// Releases every key that is down on the keyboard of synthetic keys and lets it repeat again.
void releaseSyntheticKeys(_XDisplay* display);
/// Lets one keyboard repeat as another does.
void copyRepeatRate(_XDisplay* display, int from, int to);

}  // namespace tessarok::x11

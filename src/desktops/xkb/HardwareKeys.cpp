#include "desktops/xkb/HardwareKeys.h"

#include <array>
#include <linux/input-event-codes.h>

namespace tessarok::xkb::hardwareKeys {

namespace {

constexpr std::size_t kXKeys = 256;

struct Pair {
  unsigned kernel;
  KeyCode code;
};

constexpr Pair kPairs[] = {
    {KEY_GRAVE, keyCodes::grave},
    {KEY_1, 18},
    {KEY_2, 19},
    {KEY_3, 20},
    {KEY_4, 21},
    {KEY_5, 23},
    {KEY_6, 22},
    {KEY_7, 26},
    {KEY_8, 28},
    {KEY_9, 25},
    {KEY_0, 29},
    {KEY_MINUS, 27},
    {KEY_EQUAL, 24},
    {KEY_BACKSPACE, keyCodes::backspace},
    {KEY_TAB, keyCodes::tab},
    {KEY_Q, 12},
    {KEY_W, 13},
    {KEY_E, 14},
    {KEY_R, 15},
    {KEY_T, 17},
    {KEY_Y, 16},
    {KEY_U, 32},
    {KEY_I, 34},
    {KEY_O, 31},
    {KEY_P, 35},
    {KEY_LEFTBRACE, 33},
    {KEY_RIGHTBRACE, 30},
    {KEY_BACKSLASH, 42},
    {KEY_A, 0},
    {KEY_S, 1},
    {KEY_D, 2},
    {KEY_F, 3},
    {KEY_G, 5},
    {KEY_H, 4},
    {KEY_J, 38},
    {KEY_K, 40},
    {KEY_L, 37},
    {KEY_SEMICOLON, 41},
    {KEY_APOSTROPHE, 39},
    {KEY_ENTER, keyCodes::returnKey},
    // Beside the left Shift.
    {KEY_102ND, keyCodes::isoSection},
    {KEY_Z, 6},
    {KEY_X, 7},
    {KEY_C, 8},
    {KEY_V, 9},
    {KEY_B, 11},
    {KEY_N, 45},
    {KEY_M, 46},
    {KEY_COMMA, 43},
    {KEY_DOT, 47},
    {KEY_SLASH, 44},
    {KEY_SPACE, keyCodes::space},
    {KEY_ESC, keyCodes::escape},
    {KEY_HOME, keyCodes::home},
    {KEY_END, keyCodes::end},
    {KEY_PAGEUP, keyCodes::pageUp},
    {KEY_PAGEDOWN, keyCodes::pageDown},
    {KEY_DELETE, keyCodes::forwardDelete},
    {KEY_LEFT, keyCodes::left},
    {KEY_RIGHT, keyCodes::right},
    {KEY_DOWN, keyCodes::down},
    {KEY_UP, keyCodes::up},
    {KEY_KPENTER, keyCodes::enter},
    {KEY_KP0, 82},
    {KEY_KP1, 83},
    {KEY_KP2, 84},
    {KEY_KP3, 85},
    {KEY_KP4, 86},
    {KEY_KP5, 87},
    {KEY_KP6, 88},
    {KEY_KP7, 89},
    {KEY_KP8, 91},
    {KEY_KP9, 92},
    {KEY_KPDOT, 65},
    {KEY_KPASTERISK, 67},
    {KEY_KPPLUS, 69},
    {KEY_KPSLASH, 75},
    {KEY_KPMINUS, 78},
    {KEY_KPEQUAL, 81},
};

constexpr auto kCodes = [] {
  std::array<KeyCode, kXKeys> codes{};
  for (auto& code : codes)
    code = kNoKey;
  for (const auto& pair : kPairs)
    codes[pair.kernel + kXOffset] = pair.code;
  return codes;
}();

static_assert(KEY_PAUSE + kXOffset == kPause);

}  // namespace

KeyCode codeOf(std::uint8_t xKey) {
  return kCodes[xKey];
}

std::uint8_t xKeyOf(KeyCode code) {
  for (const auto& pair : kPairs) {
    if (pair.code == code) return static_cast<std::uint8_t>(pair.kernel + kXOffset);
  }
  return 0;
}

}  // namespace tessarok::xkb::hardwareKeys

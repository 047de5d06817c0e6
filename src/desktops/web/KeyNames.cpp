#include "desktops/web/KeyNames.h"

#include <algorithm>
#include <iterator>

namespace tessarok::web::keyNames {

namespace {

struct Pair {
  std::string_view name;
  KeyCode code;
};

// The names are those of "UI Events KeyboardEvent code Values".
constexpr Pair kPairs[] = {
    {"Backquote", keyCodes::grave},
    {"Digit1", 18},
    {"Digit2", 19},
    {"Digit3", 20},
    {"Digit4", 21},
    {"Digit5", 23},
    {"Digit6", 22},
    {"Digit7", 26},
    {"Digit8", 28},
    {"Digit9", 25},
    {"Digit0", 29},
    {"Minus", 27},
    {"Equal", 24},
    {"Backspace", keyCodes::backspace},
    {"Tab", keyCodes::tab},
    {"KeyQ", 12},
    {"KeyW", 13},
    {"KeyE", 14},
    {"KeyR", 15},
    {"KeyT", 17},
    {"KeyY", 16},
    {"KeyU", 32},
    {"KeyI", 34},
    {"KeyO", 31},
    {"KeyP", 35},
    {"BracketLeft", 33},
    {"BracketRight", 30},
    {"Backslash", 42},
    {"KeyA", 0},
    {"KeyS", 1},
    {"KeyD", 2},
    {"KeyF", 3},
    {"KeyG", 5},
    {"KeyH", 4},
    {"KeyJ", 38},
    {"KeyK", 40},
    {"KeyL", 37},
    {"Semicolon", 41},
    {"Quote", 39},
    {"Enter", keyCodes::returnKey},
    {"KeyZ", 6},
    {"KeyX", 7},
    {"KeyC", 8},
    {"KeyV", 9},
    {"KeyB", 11},
    {"KeyN", 45},
    {"KeyM", 46},
    {"Comma", 43},
    {"Period", 47},
    {"Slash", 44},
    {"Space", keyCodes::space},
    {"Escape", keyCodes::escape},
    {"Home", keyCodes::home},
    {"End", keyCodes::end},
    {"PageUp", keyCodes::pageUp},
    {"PageDown", keyCodes::pageDown},
    {"Delete", keyCodes::forwardDelete},
    {"ArrowLeft", keyCodes::left},
    {"ArrowRight", keyCodes::right},
    {"ArrowDown", keyCodes::down},
    {"ArrowUp", keyCodes::up},
    {"NumpadEnter", keyCodes::enter},
};

}  // namespace

std::optional<KeyCode> codeOf(std::string_view name) {
  const auto* const found = std::find_if(std::begin(kPairs), std::end(kPairs),
                                         [&](const Pair& pair) { return pair.name == name; });
  return found == std::end(kPairs) ? std::nullopt : std::optional(found->code);
}

}  // namespace tessarok::web::keyNames

#include "desktops/terminal/KeyboardModes.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

namespace tessarok::terminal {

namespace {

/// More than any terminal keeps.
constexpr int kDeepest = 1000;

/// Absent numbers have a value too.
int numberIn(std::string_view text, int absent) {
  int number = absent;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

}  // namespace

void KeyboardModes::note(std::string_view parameters, char final, Screen screen) {
  auto& pushed = pushed_[static_cast<std::size_t>(screen)];
  if (final == 'u' && parameters.starts_with('>')) {
    pushed = std::min(pushed + 1, kDeepest);
  } else if (final == 'u' && parameters.starts_with('<')) {
    pushed -= std::clamp(numberIn(parameters.substr(1), 1), 0, pushed);
  } else if (final == 'm' && (parameters == ">4" || parameters.starts_with(">4;"))) {
    modifiesOtherKeys_ = parameters.size() > 3 && numberIn(parameters.substr(3), 0) != 0;
  }
}

std::string KeyboardModes::undoing(Screen screen) const {
  std::string sequence;
  const auto pushed = pushed_[static_cast<std::size_t>(screen)];
  if (pushed > 0) sequence += "\x1b[<" + std::to_string(pushed) + "u";
  if (modifiesOtherKeys_) sequence += "\x1b[>4m";
  return sequence;
}

}  // namespace tessarok::terminal

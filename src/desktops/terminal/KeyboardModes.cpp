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

/// Whether reports are asked for behind "= reports ; how", of which one stands for exactly these,
/// two for these too, and three for these no longer.
bool changesReports(std::string_view parameters, bool before) {
  constexpr int kThese = 1;
  const auto separator = std::min(parameters.find(';'), parameters.size());
  const bool any = numberIn(parameters, 0) != 0;
  const int how =
      separator < parameters.size() ? numberIn(parameters.substr(separator + 1), kThese) : kThese;
  if (how == kThese) return any;
  return before || (how == 2 && any);
}

}  // namespace

void KeyboardModes::note(std::string_view parameters, char final, Screen screen) {
  const auto index = static_cast<std::size_t>(screen);
  auto& pushed = pushed_[index];
  if (final == 'u' && parameters.starts_with('>')) {
    pushed = std::min(pushed + 1, kDeepest);
  } else if (final == 'u' && parameters.starts_with('<')) {
    pushed -= std::clamp(numberIn(parameters.substr(1), 1), 0, pushed);
  } else if (final == 'u' && parameters.starts_with('=')) {
    // What is on the stack goes with that.
    if (pushed == 0) changed_[index] = changesReports(parameters.substr(1), changed_[index]);
  } else if (final == 'm' && (parameters == ">4" || parameters.starts_with(">4;"))) {
    modifiesOtherKeys_ = parameters.size() > 3 && numberIn(parameters.substr(3), 0) != 0;
  }
}

std::string KeyboardModes::undoing(Screen screen) const {
  std::string sequence;
  const auto index = static_cast<std::size_t>(screen);
  const auto pushed = pushed_[index];
  if (pushed > 0) sequence += "\x1b[<" + std::to_string(pushed) + "u";
  if (changed_[index]) sequence += "\x1b[=0u";
  if (modifiesOtherKeys_) sequence += "\x1b[>4m";
  return sequence;
}

}  // namespace tessarok::terminal

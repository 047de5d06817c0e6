#include "desktops/terminal/HotKeys.h"

#include <array>
#include <charconv>

namespace tessarok::terminal {

namespace {

using Kind = InputItem::Kind;
using Key = HotKeys::Key;
using Phase = HotKeys::Phase;
using Press = HotKeys::Press;

constexpr int kSpace = 32;
// Terminals send 1 plus a sum of these.
constexpr unsigned kAlt = 2;
constexpr unsigned kControl = 4;
/// Shift, Alt, Control, Super, Hyper and Meta; not Caps Lock and Num Lock.
constexpr unsigned kModifiers = 63;

/// The numbers of a sequence, those behind a colon being more of the one before it.
struct Numbers {
  std::array<int, 3> first{};
  std::array<int, 3> second{};
};

Numbers numbersOf(std::string_view text) {
  Numbers numbers;
  const auto* next = text.data();
  const auto* const end = next + text.size();
  for (std::size_t i = 0; i < numbers.first.size() && next < end; ++i) {
    next = std::from_chars(next, end, numbers.first[i]).ptr;
    if (next < end && *next == ':') {
      next = std::from_chars(next + 1, end, numbers.second[i]).ptr;
    }
    while (next < end && *next != ';')
      ++next;
    if (next < end) ++next;
  }
  return numbers;
}

Key keyOf(int modifiers) {
  const auto held = static_cast<unsigned>(modifiers > 0 ? modifiers - 1 : 0) & kModifiers;
  if (held == kAlt) return Key::manual;
  return held == kControl ? Key::layout : Key::none;
}

Phase phaseOf(int number) {
  if (number == 2) return Phase::repeat;
  return number == 3 ? Phase::release : Phase::press;
}

/// Space, as the kitty protocol ("CSI 32;5:1u") and modifyOtherKeys ("CSI 27;5;32~") send it.
Press pressOf(std::string_view sequence) {
  if (sequence.size() < 4 || !sequence.starts_with("\x1b[")) return {};
  const auto numbers = numbersOf(sequence.substr(2, sequence.size() - 3));
  const char final = sequence.back();
  if (final == 'u' && numbers.first[0] == kSpace) {
    return {keyOf(numbers.first[1]), phaseOf(numbers.second[1])};
  }
  const bool isOther = final == '~' && numbers.first[0] == 27 && numbers.first[2] == kSpace;
  return isOther ? Press{keyOf(numbers.first[1]), Phase::press} : Press{};
}

}  // namespace

Press HotKeys::of(const InputItem& item) const {
  Press press;
  if (item.kind == Kind::sequence) press = pressOf(item.bytes);
  if (item.kind == Kind::control && item.scalar == 0) press.key = Key::layout;
  if (item.kind == Kind::meta && item.scalar == U' ') press.key = Key::manual;
  if (press.key == Key::manual && settings_("manualKey") == "pause") return {};
  if (press.key == Key::layout && settings_("layoutKey") == "none") return {};
  return press;
}

bool HotKeys::pausesWithGrave() const {
  // Of the keys beside the left Shift a terminal tells nothing, and ё never pauses.
  const auto key = settings_("pauseKey");
  return key != "none" && key != "section";
}

}  // namespace tessarok::terminal

#include "desktops/terminal/Retyping.h"

#include <utility>

#include "text/Text.h"

namespace tessarok::terminal {

namespace {

/// What stands farther behind may be a clock, or move up from the next row.
constexpr std::size_t kRestCompared = 8;

}  // namespace

bool Retyping::begin(std::u32string_view old, char erase, std::string text) {
  if (old.empty() || !screen_.isFilled()) return false;
  place_ = screen_.placeBeforeCursor(old);
  if (!screen_.endsWith(old, place_)) return false;
  old_ = old;
  rest_ = screen_.restOfRow().substr(0, kRestCompared);
  toProgram_.add(std::string(old.size(), erase));
  text_ = std::move(text);
  isLate_ = false;
  return true;
}

/// Whether so much of the old text is left, and nothing else has changed.
bool Retyping::isErasedTo(std::size_t length) const {
  const std::u32string_view old = old_;
  if (!screen_.isFilled() || !screen_.endsWith(old.substr(0, length), place_)) return false;
  const auto now = screen_.restOfRow();
  // In an editor that waits for commands the cursor has only moved.
  return now.starts_with(rest_) && !now.starts_with(old_.substr(length) + rest_);
}

void Retyping::noteOutput() {
  if (!text_ || !isErasedTo(0)) return;
  toProgram_.add(*std::exchange(text_, std::nullopt));
}

void Retyping::stopWaiting() {
  isLate_ = true;
  for (std::size_t length = 1; text_ && length < old_.size(); ++length) {
    if (!isErasedTo(length)) continue;
    std::string erased;
    for (const auto character : old_.substr(length))
      text::appendScalar(character, erased);
    toProgram_.add(erased);
    text_.reset();
  }
}

}  // namespace tessarok::terminal

#include "desktops/terminal/TypedLine.h"

#include <algorithm>

#include "text/Text.h"

namespace tessarok::terminal {

namespace {

/// What a person types without Return is shorter.
constexpr std::size_t kLongest = 2000;
/// One character may stand before the cursor by chance.
constexpr std::size_t kShortestFound = 2;

bool isLetter(char32_t character) {
  std::string bytes;
  text::appendScalar(character, bytes);
  return text::isLetter(bytes) || text::isNumber(bytes);
}

}  // namespace

void TypedLine::add(char32_t character) {
  if (isHidden_) return;
  if (text_.size() >= kLongest) breakOff();
  if (!text_.empty() && isShown_) followProgram();
  if (text_.empty()) beginPart();
  text_.push_back(character);
  isShown_ = false;
  if (isLetter(character)) ++unshownLetters_;
}

void TypedLine::followProgram() {
  if (screen_.endsWith(text_, place_.value_or(-1))) return;
  if (seemsShown()) {
    // Drawn anew somewhere else.
    place_ = screen_.placeBeforeCursor(text_);
    return;
  }
  // The program has gone on by itself, so what comes belongs to another line.
  end();
  sawOutput_ = true;
  isWhole_ = false;
}

void TypedLine::beginPart() {
  screen_.remember();
  place_.reset();
  if (sawOutput_) place_ = screen_.cursor();
}

void TypedLine::erase() {
  if (text_.empty()) return breakOff();
  text_.pop_back();
  isShown_ = false;
  // Until this is shown, the last word is not.
  unshownLetters_ = text_.empty() ? 0 : std::max<std::size_t>(unshownLetters_, 1);
}

void TypedLine::breakOff() {
  text_.clear();
  place_.reset();
  isShown_ = true;
  isWhole_ = false;
  sawOutput_ = false;
  unshownLetters_ = 0;
}

void TypedLine::end() {
  breakOff();
  isWhole_ = true;
  isHidden_ = false;
  lettersShown_ = 0;
  screen_.forget();
}

void TypedLine::noteOutput() {
  sawOutput_ = true;
  static_cast<void>(isShown());
}

void TypedLine::hide() {
  breakOff();
  isHidden_ = true;
}

bool TypedLine::isShown() {
  if (isShown_ || text_.empty()) return true;
  if (place_ && screen_.endsWith(text_, *place_)) {
    markShown();
  } else if (lettersShown_ > 0 && seemsShown()) {
    // A line that has been shown is no secret: it was drawn anew somewhere else.
    settle();
  }
  return isShown_;
}

bool TypedLine::seemsShown() const {
  return text_.size() >= kShortestFound &&
         screen_.endsWith(text_, screen_.placeBeforeCursor(text_));
}

void TypedLine::settle() {
  if (isShown_ || !seemsShown()) return;
  place_ = screen_.placeBeforeCursor(text_);
  markShown();
}

void TypedLine::markShown() {
  isShown_ = true;
  lettersShown_ += unshownLetters_;
  unshownLetters_ = 0;
}

}  // namespace tessarok::terminal

#include "desktops/terminal/OuterLayout.h"

#include <optional>

namespace tessarok::terminal {

namespace {

/// Whether a letter is Russian or English; absent for all other characters.
std::optional<bool> isRussianLetter(char32_t character) {
  if (character < 0x80) {
    const char32_t lower = character | 0x20;
    return lower >= 'a' && lower <= 'z' ? std::optional(false) : std::nullopt;
  }
  const bool isRussian =
      (character >= U'А' && character <= U'я') || character == U'Ё' || character == U'ё';
  return isRussian ? std::optional(true) : std::nullopt;
}

}  // namespace

void OuterLayout::note(char32_t character) {
  const auto russian = isRussianLetter(character);
  if (!russian || *russian == isRussian_) return;
  isRussian_ = *russian;
  const bool isThereAlready = own_.isRussian() == isRussian_ && own_.isSelectedByCorrector();
  if (isThereAlready) {
    toggle();
  } else {
    chosen_.reset();
    own_.setRussian(isRussian_);
  }
}

void OuterLayout::toggle() {
  const bool russian = !own_.isRussian();
  chosen_ = russian == isRussian_ ? std::nullopt : std::optional(russian);
  own_.setRussian(russian);
}

void OuterLayout::goHome() {
  own_.setRussian(chosen_.value_or(isRussian_));
}

OuterLayout::Key OuterLayout::keyFor(char32_t character) const {
  const auto stroke = TerminalInputSources::table(isRussian_).strokeFor(character);
  if (!stroke) {
    // Perhaps the first sign of another outer layout, but only letters are sure ones.
    const auto other = TerminalInputSources::table(!isRussian_).strokeFor(character);
    return other ? Key{other->code, other->shift, character} : Key{kNoKey, false, character};
  }
  const auto typed =
      agrees()
          ? std::nullopt
          : TerminalInputSources::table(own_.isRussian()).character(stroke->code, stroke->shift);
  return {stroke->code, stroke->shift, typed ? *typed : character};
}

}  // namespace tessarok::terminal

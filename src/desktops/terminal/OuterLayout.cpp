#include "desktops/terminal/OuterLayout.h"

#include <optional>
#include <string>
#include <utility>

#include "desktops/layouts/KeyTable.h"
#include "text/Text.h"
#include "words/Letters.h"

namespace tessarok::terminal {

namespace {

using layouts::KeyTable;

std::optional<Language> languageOf(char32_t character) {
  std::string encoded;
  text::appendScalar(character, encoded);
  return letters::languageOf(encoded);
}

}  // namespace

void OuterLayout::note(char32_t character) {
  const auto language = languageOf(character);
  if (!language) return;
  const auto left = std::exchange(left_, std::nullopt);
  if (*language == language_) return;
  language_ = *language;
  if (left == language_) {
    chosen_ = own_.language();
    return;
  }
  const bool isThereAlready = agrees() && own_.isSelectedByCorrector();
  if (isThereAlready) {
    toggle();
  } else {
    chosen_.reset();
    own_.setLanguage(language_);
  }
}

void OuterLayout::toggle() {
  const auto language = other(own_.language());
  chosen_ = language == language_ ? std::nullopt : std::optional(language);
  own_.setLanguage(language);
}

void OuterLayout::goHomeWithinLine() {
  const bool isAway = !agrees() && own_.isSelectedByCorrector();
  const auto away = own_.language();
  goHome();
  if (isAway) left_ = away;
}

void OuterLayout::goHome() {
  left_.reset();
  own_.setLanguage(chosen_.value_or(language_));
}

OuterLayout::Key OuterLayout::keyFor(char32_t character) const {
  const auto stroke = KeyTable::of(language_).strokeFor(character);
  if (!stroke) {
    // Perhaps the first sign of another outer layout, but only letters are sure ones.
    const auto otherStroke = KeyTable::of(other(language_)).strokeFor(character);
    return otherStroke ? Key{otherStroke->code, otherStroke->shift, character}
                       : Key{kNoKey, false, character};
  }
  const auto typed = agrees()
                         ? std::nullopt
                         : KeyTable::of(own_.language()).character(stroke->code, stroke->shift);
  return {stroke->code, stroke->shift, typed ? *typed : character};
}

}  // namespace tessarok::terminal

#include "desktops/virtual/TextField.h"

#include "platform/EventFlags.h"
#include "text/Text.h"
#include "typing/KeyCodes.h"

namespace tessarok::virtualdesktop {

void TextField::keyDown(const VirtualEvent& event) {
  namespace flags = platform::eventFlags;
  if ((event.modifiers & (flags::command | flags::control)) != 0) return;
  switch (event.code) {
    case keyCodes::backspace:
      return eraseBefore();
    case keyCodes::forwardDelete:
      return eraseAfter();
    case keyCodes::returnKey:
    case keyCodes::enter:
      return insert("\n");
    case keyCodes::tab:
      return insert("\t");
    case keyCodes::left:
      return moveLeft();
    case keyCodes::right:
      return moveRight();
    case keyCodes::up:
    case keyCodes::home:
      return moveToStart();
    case keyCodes::down:
    case keyCodes::end:
      return moveCaretToEnd();
    case keyCodes::escape:
    case keyCodes::pageUp:
    case keyCodes::pageDown:
      return;
    default:
      return insert(event.payload);
  }
}

void TextField::moveCaretToEnd() {
  before_ += after_;
  after_.clear();
}

void TextField::clear() {
  before_.clear();
  after_.clear();
}

std::size_t TextField::caret() const {
  return text::count(before_);
}

void TextField::insert(std::u16string_view units) {
  text::assignUtf16(units, typed_);
  before_ += typed_;
}

void TextField::eraseBefore() {
  before_.resize(text::withoutLast(before_, 1).size());
}

void TextField::eraseAfter() {
  after_.erase(0, text::firstCharacter(after_).size());
}

void TextField::moveLeft() {
  const auto character = std::string(text::lastCharacter(before_));
  before_.resize(before_.size() - character.size());
  after_.insert(0, character);
}

void TextField::moveRight() {
  const auto character = std::string(text::firstCharacter(after_));
  after_.erase(0, character.size());
  before_ += character;
}

void TextField::moveToStart() {
  after_.insert(0, before_);
  before_.clear();
}

}  // namespace tessarok::virtualdesktop

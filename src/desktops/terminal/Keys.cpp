#include "desktops/terminal/Keys.h"

#include "platform/EventFlags.h"
#include "text/Text.h"
#include "typing/KeyCodes.h"

namespace tessarok::terminal {

namespace {

using Kind = InputItem::Kind;

bool isLetterOrNumber(const InputItem& item) {
  return item.kind == Kind::character && (text::isLetter(item.bytes) || text::isNumber(item.bytes));
}

/// Whether a key may end a word, or change it.
bool mayRetype(const InputItem& item) {
  switch (item.kind) {
    case Kind::character:
      return !isLetterOrNumber(item);
    case Kind::control:
      return item.scalar == '\r' || item.scalar == '\n' || item.scalar == '\t';
    case Kind::meta:
      return item.scalar == U' ';
    case Kind::sequence:
      return item.bytes == "\x1bOM";
    default:
      return false;
  }
}

}  // namespace

Keys::Keys(TerminalDesktop& desktop, const Pty& pty, ProgramOutput& output,
           posix::WriteQueue& toProgram)
    : desktop_(desktop),
      pty_(pty),
      output_(output),
      toProgram_(toProgram),
      outer_(desktop.inputSources()) {
  desktop_.eventTaps().setDelivery([this](const TerminalEvent& event) { deliver(event); });
}

bool Keys::needsEchoFirst(const InputItem& item) {
  if (!mayRetype(item) || output_.isEchoComplete() || output_.isAlternateScreen()) return false;
  const auto modes = pty_.modes();
  if (!modes || !modes->isRaw()) return false;
  if (expectsEcho_) return true;
  // It has not shown anything lately, and a person should not wait for that again and again.
  giveUpEcho();
  return false;
}

void Keys::giveUpEcho() {
  expectsEcho_ = false;
  output_.forgetEcho();
  KeyReader::readUnknown(event_);
  send();
}

void Keys::press(const InputItem& item) {
  const auto modes = pty_.modes();
  if (output_.isAlternateScreen() || item.kind == Kind::answer || item.kind == Kind::pasteBracket) {
    toProgram_.add(item.bytes);
    return;
  }
  // What the program makes of this key is not known, so neither is the word that it is part of.
  if (!modes) return pressSecretly(item);
  erase_ = modes->erase();
  if (modes->isSecret()) {
    pressSecretly(item);
  } else {
    pressKey(item, *modes);
  }
}

void Keys::pressSecretly(const InputItem& item) {
  output_.forgetEcho();
  KeyReader::readUnknown(event_);
  event_.bytes = item.bytes;
  send();
}

void Keys::pressKey(const InputItem& item, const PtyModes& modes) {
  if (modes.isRaw() && mayRetype(item) && output_.hasEchoed()) expectsEcho_ = true;
  reader_.read(item, modes, event_);
  const bool isControlSpace = item.kind == Kind::control && item.scalar == 0;
  if (isControlSpace) return pressControlSpace();
  if (modes.isUnedited()) return pressUnedited();
  expectEcho(item, modes);
  send();
}

void Keys::pressControlSpace() {
  // The tap sees it, as it sees the desktop's own shortcut; the program does not.
  event_.bytes.clear();
  send();
  auto& sources = desktop_.inputSources();
  sources.setRussian(!sources.isRussian());
}

void Keys::pressUnedited() {
  output_.forgetEcho();
  // The layouts still say what the key types.
  text_ = event_.bytes;
  KeyReader::readUnknown(event_);
  event_.bytes = text_;
  send();
}

void Keys::expectEcho(const InputItem& item, const PtyModes& modes) {
  if (!modes.isRaw()) return output_.forgetEcho();
  if (isLetterOrNumber(item)) return output_.expectEcho(event_.bytes);
  if (event_.code == keyCodes::backspace && event_.modifiers == 0) return output_.expectErased();
  output_.forgetEcho();
}

void Keys::send() {
  // A change of layout that the key has brought about is to be known before the key itself.
  desktop_.runLoop().runQueue();
  desktop_.keyboard().noteKeyDown();
  desktop_.eventTaps().press(event_);
  desktop_.runLoop().runQueue();
}

void Keys::deliver(const TerminalEvent& event) {
  if (event.type == platform::EventType::keyUp) return;
  if (!event.bytes.empty()) return toProgram_.add(event.bytes);
  if (event.code == keyCodes::backspace) return toProgram_.add({&erase_, 1});
  text::assignUtf16(event.payload, text_);
  // Control+Space is the one key of the person that sends nothing, and it has no text either.
  toProgram_.add(text_);
}

}  // namespace tessarok::terminal

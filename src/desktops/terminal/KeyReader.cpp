#include "desktops/terminal/KeyReader.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "desktops/layouts/KeyTable.h"
#include "platform/EventFlags.h"
#include "text/Text.h"
#include "typing/KeyCodes.h"

namespace tessarok::terminal {

namespace {

namespace flags = platform::eventFlags;
using Kind = InputItem::Kind;

constexpr char16_t kNoBreakSpace = 0xA0;
/// Stands for a pasted text in the event of a paste.
constexpr char16_t kObjectReplacement = 0xFFFC;

std::int64_t englishKey(char32_t character) {
  const auto stroke = layouts::KeyTable::english().strokeFor(character);
  return stroke ? stroke->code : OuterLayout::kNoKey;
}

void readSpace(std::uint64_t modifiers, TerminalEvent& event) {
  event.become(keyCodes::space, modifiers);
  event.payload.push_back((modifiers & flags::option) != 0 ? kNoBreakSpace : u' ');
}

void readControl(char control, const PtyModes& modes, TerminalEvent& event) {
  if (control == '\0') return event.become(keyCodes::space, flags::control);
  if (control == modes.erase()) {
    event.become(keyCodes::backspace, 0);
  } else if (control == '\r' || control == '\n') {
    event.become(keyCodes::returnKey, 0);
  } else if (control == '\t') {
    event.become(keyCodes::tab, 0);
  } else if (control == '\x1b') {
    event.become(keyCodes::escape, 0);
  } else if (modes.clearsWord(control)) {
    // What follows starts afresh, as after Escape.
    event.become(keyCodes::escape, flags::control);
  } else if (control == '\b' || control == '\x7f') {
    event.become(keyCodes::backspace, flags::control);
  } else {
    // Control with a letter, or with one of [ \ ] ^ _.
    const auto key = static_cast<unsigned char>(control) + 0x40u;
    event.become(englishKey(key), flags::control);
  }
  event.payload.push_back(static_cast<unsigned char>(control));
}

void readMeta(const InputItem& item, const PtyModes& modes, TerminalEvent& event) {
  const bool isControl = item.scalar < 0x20 || item.scalar == 0x7F;
  if (item.scalar == U' ') {
    readSpace(flags::option, event);
  } else if (isControl) {
    readControl(static_cast<char>(item.scalar), modes, event);
    event.modifiers |= flags::option;
  } else {
    event.become(englishKey(item.scalar), flags::option);
    text::appendScalar(item.scalar, event.payload);
  }
}

/// The numbers of a sequence; 0 for one that is left out.
struct Parameters {
  int first = 0;
  int second = 0;
};

Parameters parametersOf(std::string_view text) {
  Parameters parameters;
  const auto* const end = text.data() + text.size();
  auto [next, error] = std::from_chars(text.data(), end, parameters.first);
  if (next != end && *next == ';') std::from_chars(next + 1, end, parameters.second);
  return parameters;
}

std::int64_t keyOfFinal(char final) {
  switch (final) {
    case 'A':
      return keyCodes::up;
    case 'B':
      return keyCodes::down;
    case 'C':
      return keyCodes::right;
    case 'D':
      return keyCodes::left;
    case 'F':
      return keyCodes::end;
    case 'H':
      return keyCodes::home;
    default:
      return OuterLayout::kNoKey;
  }
}

std::int64_t keyOfNumber(int number) {
  switch (number) {
    case 1:
    case 7:
      return keyCodes::home;
    case 3:
      return keyCodes::forwardDelete;
    case 4:
    case 8:
      return keyCodes::end;
    case 5:
      return keyCodes::pageUp;
    case 6:
      return keyCodes::pageDown;
    default:
      return OuterLayout::kNoKey;
  }
}

/// Terminals send 1 plus a sum: 1 for Shift, 2 for Alt, 4 for Control.
std::uint64_t modifiersOf(int number) {
  const auto held = static_cast<unsigned>(std::max(number - 1, 0));
  return ((held & 1) != 0 ? flags::shift : 0) | ((held & 2) != 0 ? flags::option : 0) |
         ((held & 4) != 0 ? flags::control : 0);
}

/// A button of the mouse, or another window coming to the front: the cursor may be elsewhere.
bool movesAway(std::string_view sequence) {
  return sequence.starts_with("\x1b[<") || sequence.starts_with("\x1b[M") || sequence == "\x1b[I" ||
         sequence == "\x1b[O";
}

void readSequence(std::string_view sequence, TerminalEvent& event) {
  if (movesAway(sequence)) {
    event.become(0, 0);
    event.type = platform::EventType::leftMouseDown;
    return;
  }
  const char final = sequence.back();
  const auto parameters = parametersOf(sequence.substr(2, sequence.size() - 3));
  if (sequence == "\x1bOM") {
    event.become(keyCodes::enter, 0);
    event.payload.push_back(u'\r');
    return;
  }
  const auto key = final == '~' ? keyOfNumber(parameters.first) : keyOfFinal(final);
  event.become(key, modifiersOf(parameters.second));
}

/// The event carries more than one character, as no key does, and the last one tells whether the
/// cursor is now behind a word.
void readUnseenText(bool endsInWord, TerminalEvent& event) {
  event.become(OuterLayout::kNoKey, 0);
  event.payload = {kObjectReplacement, endsInWord ? u'x' : u' '};
}

void readPaste(std::string_view text, TerminalEvent& event) {
  const char last = text.back();
  readUnseenText(static_cast<unsigned char>(last) > ' ' && last != '\x7f', event);
}

}  // namespace

void KeyReader::read(const InputItem& item, const PtyModes& modes, TerminalEvent& event) {
  switch (item.kind) {
    case Kind::character:
      return readCharacter(item, event);
    case Kind::control:
      readControl(item.bytes.front(), modes, event);
      break;
    case Kind::meta:
      readMeta(item, modes, event);
      break;
    case Kind::sequence:
      readSequence(item.bytes, event);
      break;
    case Kind::paste:
      readPaste(item.bytes, event);
      break;
    case Kind::pasteBracket:
    case Kind::answer:
    case Kind::unknown:
      readUnknown(event);
      break;
  }
  event.bytes = item.bytes;
}

void KeyReader::readUnknown(TerminalEvent& event) {
  readUnseenText(true, event);
}

void KeyReader::readOpening(const InputItem& item, TerminalEvent& event) {
  readUnseenText(false, event);
  event.bytes = item.bytes;
}

void KeyReader::readClosing(const InputItem& item, TerminalEvent& event) {
  event.become(OuterLayout::kNoKey, 0);
  text::appendScalar(item.scalar, event.payload);
  event.bytes = item.bytes;
}

void KeyReader::readStart(TerminalEvent& event) {
  readUnseenText(false, event);
}

void KeyReader::readShown(char32_t character, Language language, TerminalEvent& event) {
  const auto stroke = layouts::KeyTable::of(language).strokeFor(character);
  // What stands there already is no request for a pause.
  const bool isPauseKey =
      stroke && (stroke->code == keyCodes::grave || stroke->code == keyCodes::isoSection);
  event.become(stroke && !isPauseKey ? stroke->code : OuterLayout::kNoKey,
               stroke && stroke->shift ? flags::shift : 0);
  text::appendScalar(character, event.payload);
}

void KeyReader::readCharacter(const InputItem& item, TerminalEvent& event) {
  if (item.scalar == U' ') {
    readSpace(0, event);
    event.bytes = item.bytes;
    return;
  }
  outer_.note(item.scalar);
  const auto key = outer_.keyFor(item.scalar);
  // A tilde begins many a path, and ё is a letter: neither stands for a pause.
  const bool isPauseKey = key.code == keyCodes::grave || key.code == keyCodes::isoSection;
  const auto code = isPauseKey && key.character != U'`' ? OuterLayout::kNoKey : key.code;
  event.become(code, key.shift ? flags::shift : 0);
  text::appendScalar(key.character, event.payload);
  if (key.character == item.scalar) {
    event.bytes = item.bytes;
  } else {
    text::appendScalar(key.character, event.bytes);
  }
}

}  // namespace tessarok::terminal

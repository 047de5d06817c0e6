// Not understood: the three bytes after "ESC [ M" of old mouse reports beyond column 223, and keys
// of protocols that a program has to ask for; they are sequences like any other.

#include "desktops/terminal/InputDecoder.h"

#include <algorithm>

namespace tessarok::terminal {

namespace {

using Kind = InputItem::Kind;

constexpr char kEscape = '\x1b';
constexpr char kBell = '\a';
constexpr char kDelete = '\x7f';
constexpr std::string_view kPasteStart = "\x1b[200~";
constexpr std::string_view kPasteEnd = "\x1b[201~";
constexpr std::string_view kStringEnd = "\x1b\\";
/// A longer sequence is none.
constexpr std::size_t kLongestSequence = 64;

bool isControl(char byte) {
  return static_cast<unsigned char>(byte) < 0x20 || byte == kDelete;
}

bool isBetween(char byte, char first, char last) {
  return byte >= first && byte <= last;
}

/// What a byte string turns out to be as UTF-8.
struct Scalar {
  /// Bytes of the scalar; 0 when the first byte begins none.
  std::size_t size = 0;
  char32_t value = 0;
  /// The bytes are right so far, but more are needed.
  bool isCut = false;
};

/// The bytes that the first one announces, and its part of the value.
Scalar announced(unsigned char first) {
  if (first < 0x80) return {1, first};
  if (first >= 0xC2 && first <= 0xDF) return {2, first & 0x1Fu};
  if (first >= 0xE0 && first <= 0xEF) return {3, first & 0x0Fu};
  if (first >= 0xF0 && first <= 0xF4) return {4, first & 0x07u};
  return {};
}

/// The second byte of some scalars has narrower limits: no overlong forms, no surrogates, nothing
/// beyond U+10FFFF.
bool isSecondByte(unsigned char first, unsigned char second) {
  switch (first) {
    case 0xE0:
      return second >= 0xA0 && second <= 0xBF;
    case 0xED:
      return second >= 0x80 && second <= 0x9F;
    case 0xF0:
      return second >= 0x90 && second <= 0xBF;
    case 0xF4:
      return second >= 0x80 && second <= 0x8F;
    default:
      return second >= 0x80 && second <= 0xBF;
  }
}

Scalar readScalar(std::string_view bytes) {
  const auto first = static_cast<unsigned char>(bytes.front());
  auto scalar = announced(first);
  for (std::size_t i = 1; i < scalar.size; ++i) {
    if (i == bytes.size()) {
      scalar.isCut = true;
      return scalar;
    }
    const auto byte = static_cast<unsigned char>(bytes[i]);
    if (i == 1 ? !isSecondByte(first, byte) : (byte & 0xC0u) != 0x80) return {};
    scalar.value = (scalar.value << 6) | (byte & 0x3Fu);
  }
  return scalar;
}

/// Whether the text could become `whole` when more of it comes.
bool isBeginningOf(std::string_view text, std::string_view whole) {
  return text.size() < whole.size() && whole.starts_with(text);
}

/// The size of the sequences that do not end as others do; 0 for all others.
std::size_t fixedSize(std::string_view sequence) {
  // An old mouse report: button, column and row.
  if (sequence.starts_with("\x1b[M")) return 6;
  // F1 to F5 of the Linux console.
  return sequence.starts_with("\x1b[[") ? 4 : 0;
}

/// The length of what a text holds before `mark`, or before what may become it. All of the text
/// when it holds neither.
std::size_t lengthBefore(std::string_view text, std::string_view mark) {
  for (auto at = text.find(kEscape); at != std::string_view::npos;
       at = text.find(kEscape, at + 1)) {
    const auto tail = text.substr(at);
    if (tail.starts_with(mark) || isBeginningOf(tail, mark)) return at;
  }
  return text.size();
}

/// The length of what a text holds before the first control character other than ESC.
std::size_t lengthBeforeControl(std::string_view text) {
  const auto* found = std::find_if(text.begin(), text.end(),
                                   [](char byte) { return isControl(byte) && byte != kEscape; });
  return static_cast<std::size_t>(found - text.begin());
}

bool beginsAnswer(char second) {
  // OSC, DCS, APC, PM and SOS.
  return std::string_view("]P_^X").find(second) != std::string_view::npos;
}

}  // namespace

void InputDecoder::append(std::string_view bytes) {
  buffer_.erase(0, position_);
  position_ = 0;
  buffer_.append(bytes);
  waiting_ = false;
  complete_ = false;
}

std::optional<InputItem> InputDecoder::next() {
  waiting_ = false;
  if (size() == 0) return std::nullopt;
  if (mode_ == Mode::answer) return nextOfAnswer();
  return mode_ == Mode::paste || burst_ ? nextPasted() : nextKey();
}

void InputDecoder::endWaiting() {
  complete_ = true;
  // Answers come in one go.
  if (mode_ == Mode::answer && size() == 0) mode_ = Mode::keys;
}

std::string_view InputDecoder::rest() const {
  return std::string_view(buffer_).substr(position_);
}

InputItem InputDecoder::take(Kind kind, std::size_t size, char32_t scalar) {
  const InputItem item{kind, rest().substr(0, size), scalar};
  position_ += item.bytes.size();
  return item;
}

std::optional<InputItem> InputDecoder::wait() {
  waiting_ = true;
  return std::nullopt;
}

std::optional<InputItem> InputDecoder::nextPasted() {
  const bool inBrackets = mode_ == Mode::paste;
  const auto mark = inBrackets ? kPasteEnd : kPasteStart;
  const auto text = rest();
  if (text.starts_with(mark)) {
    mode_ = inBrackets ? Mode::keys : Mode::paste;
    return take(Kind::pasteBracket, mark.size());
  }
  const auto size = lengthBefore(text, mark);
  if (size > 0) return take(Kind::paste, size);
  // Within brackets nothing but the closing one begins with ESC, so a silence ends nothing; to
  // miss that bracket would mean to take all keys for pasted.
  if (inBrackets) return std::nullopt;
  return complete_ ? std::optional(take(Kind::paste, text.size())) : wait();
}

std::optional<InputItem> InputDecoder::nextOfAnswer() {
  const auto text = rest();
  const auto size = std::min(lengthBeforeControl(text), lengthBefore(text, kStringEnd));
  if (size > 0) return take(Kind::answer, size);
  if (isBeginningOf(text, kStringEnd) && !complete_) return wait();
  mode_ = Mode::keys;
  if (text.front() == kBell) return take(Kind::answer, 1);
  if (text.starts_with(kStringEnd)) return take(Kind::answer, kStringEnd.size());
  // No answer holds a key: this one was cut off, or it was a key held with Alt all along.
  return nextKey();
}

std::optional<InputItem> InputDecoder::nextKey() {
  const char first = rest().front();
  if (first == kEscape) return nextEscape();
  if (isControl(first)) return take(Kind::control, 1, static_cast<unsigned char>(first));
  return nextScalar(0, Kind::character);
}

std::optional<InputItem> InputDecoder::nextEscape() {
  const auto text = rest();
  if (text.size() == 1) {
    if (!complete_) return wait();
    return take(Kind::control, 1, static_cast<unsigned char>(kEscape));
  }
  const char second = text[1];
  // Two of them: the first is a key of its own, the second may begin a sequence.
  if (second == kEscape) return take(Kind::control, 1, static_cast<unsigned char>(kEscape));
  if (second == '[' || second == 'O') return nextControlSequence();
  if (beginsAnswer(second)) {
    // Alone, it is a key held with Alt.
    if (text.size() == 2 && !complete_) return wait();
    if (text.size() > 2) {
      mode_ = Mode::answer;
      return take(Kind::answer, 2);
    }
  }
  if (isControl(second)) return take(Kind::meta, 2, static_cast<unsigned char>(second));
  return nextScalar(1, Kind::meta);
}

std::optional<InputItem> InputDecoder::nextControlSequence() {
  const auto text = rest();
  // ESC O A for SS3: one character after an optional number.
  const bool isSs3 = text[1] == 'O';
  std::size_t at = 2;
  while (at < text.size() && at < kLongestSequence && isBetween(text[at], '\x20', '\x3f') &&
         (!isSs3 || isBetween(text[at], '0', '9'))) {
    ++at;
  }
  if (at == text.size()) {
    if (!complete_) return wait();
    return at == 2 ? take(Kind::meta, 2, static_cast<unsigned char>(text[1]))
                   : take(Kind::sequence, at);
  }
  // Something else broke in: what came before it is a sequence that nobody knows.
  if (!isBetween(text[at], '\x40', '\x7e')) {
    return at == 2 ? take(Kind::meta, 2, static_cast<unsigned char>(text[1]))
                   : take(Kind::sequence, at);
  }
  if (const auto size = fixedSize(text); size > 0) {
    if (text.size() < size && !complete_) return wait();
    return take(Kind::sequence, std::min(text.size(), size));
  }
  if (text.starts_with(kPasteStart)) {
    mode_ = Mode::paste;
    return take(Kind::pasteBracket, kPasteStart.size());
  }
  return take(Kind::sequence, at + 1);
}

std::optional<InputItem> InputDecoder::nextScalar(std::size_t from, Kind kind) {
  const auto scalar = readScalar(rest().substr(from));
  if (scalar.isCut && !complete_) return wait();
  if (scalar.isCut) return take(Kind::unknown, rest().size());
  if (scalar.size > 0) return take(kind, from + scalar.size, scalar.value);
  // The Escape key, and then a byte that means nothing.
  if (from > 0) return take(Kind::control, from, static_cast<unsigned char>(kEscape));
  return take(Kind::unknown, 1);
}

}  // namespace tessarok::terminal

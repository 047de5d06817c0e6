#include "desktops/terminal/ProgramOutput.h"

#include <algorithm>
#include <charconv>

namespace tessarok::terminal {

namespace {

constexpr char kEscape = '\x1b';
constexpr char kBell = '\a';
constexpr char kCancel = '\x18';
constexpr char kSubstitute = '\x1a';
/// Sequences with more than that set no mode that matters.
constexpr std::size_t kMaxParameters = 64;
/// More than a word is never waited for.
constexpr std::size_t kMaxExpected = 1024;

bool isContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0u) == 0x80;
}

bool isPrinting(char byte) {
  return static_cast<unsigned char>(byte) >= 0x20 && byte != '\x7f';
}

bool isAlternateScreenMode(int mode) {
  return mode == 47 || mode == 1047 || mode == 1049;
}

bool beginsString(char byte) {
  // OSC, DCS, APC, PM, SOS, and the title of a window in a window manager for terminals.
  return std::string_view("]P_^Xk").find(byte) != std::string_view::npos;
}

}  // namespace

void ProgramOutput::feed(std::string_view bytes) {
  while (!bytes.empty()) {
    // Most output is text that nobody waits for.
    if (state_ == State::text && isEchoComplete()) {
      const auto escape = bytes.find(kEscape);
      if (escape == std::string_view::npos) return;
      bytes.remove_prefix(escape);
    }
    feedByte(bytes.front());
    bytes.remove_prefix(1);
  }
}

void ProgramOutput::feedByte(char byte) {
  switch (state_) {
    case State::text:
      return feedText(byte);
    case State::escape:
      return feedEscape(byte);
    case State::sequence:
      return feedSequence(byte);
    case State::string:
      if (byte == kEscape) state_ = State::stringEscape;
      if (byte == kBell || byte == kCancel || byte == kSubstitute) state_ = State::text;
      return;
    case State::stringEscape:
      // ESC \ ends a string; any other ESC breaks it off and begins something of its own.
      state_ = State::text;
      if (byte != '\\') feedEscape(byte);
      return;
  }
}

void ProgramOutput::feedText(char byte) {
  if (byte == kEscape) {
    state_ = State::escape;
    return;
  }
  if (!isPrinting(byte) || isEchoComplete()) return;
  if (!isContinuation(byte)) {
    // What was matched of a longer character was part of another one.
    while (isContinuation(expected_[matched_]))
      --matched_;
  }
  if (expected_[matched_] != byte) return;
  ++matched_;
  if (!isEchoComplete()) return;
  forgetEcho();
  hasEchoed_ = true;
}

void ProgramOutput::feedEscape(char byte) {
  // Intermediate bytes, such as those that choose a character set.
  if (byte >= '\x20' && byte <= '\x2f') {
    state_ = State::escape;
    return;
  }
  state_ = State::text;
  if (byte == '[') {
    parameters_.clear();
    state_ = State::sequence;
  } else if (byte == kEscape) {
    state_ = State::escape;
  } else if (beginsString(byte)) {
    state_ = State::string;
  } else if (byte == 'c') {
    // A full reset.
    alternateScreen_ = false;
  }
}

void ProgramOutput::feedSequence(char byte) {
  if (byte == kEscape) {
    state_ = State::escape;
  } else if (byte == kCancel || byte == kSubstitute) {
    state_ = State::text;
  } else if (byte >= '\x40' && byte <= '\x7e') {
    state_ = State::text;
    endSequence(byte);
  } else if (byte >= '\x20' && parameters_.size() < kMaxParameters) {
    parameters_.push_back(byte);
  }
}

void ProgramOutput::endSequence(char final) {
  if ((final == 'h' || final == 'l') && parameters_.starts_with('?')) {
    setPrivateModes(final == 'h');
  }
}

void ProgramOutput::setPrivateModes(bool on) {
  const auto* next = parameters_.data() + 1;
  const auto* const end = parameters_.data() + parameters_.size();
  while (next < end) {
    int mode = 0;
    next = std::from_chars(next, end, mode).ptr;
    if (isAlternateScreenMode(mode)) alternateScreen_ = on;
    next = std::find(next, end, ';');
    if (next != end) ++next;
  }
}

void ProgramOutput::expectEcho(std::string_view character) {
  hasEchoed_ = false;
  if (expected_.size() < kMaxExpected) expected_.append(character);
}

void ProgramOutput::expectErased() {
  if (isEchoComplete()) return;
  while (isContinuation(expected_.back()))
    expected_.pop_back();
  expected_.pop_back();
  matched_ = std::min(matched_, expected_.size());
  if (isEchoComplete()) forgetEcho();
}

void ProgramOutput::forgetEcho() {
  expected_.clear();
  matched_ = 0;
  hasEchoed_ = false;
}

}  // namespace tessarok::terminal

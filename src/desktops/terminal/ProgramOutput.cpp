#include "desktops/terminal/ProgramOutput.h"

#include <algorithm>
#include <charconv>

#include "text/Text.h"

namespace tessarok::terminal {

namespace {

constexpr char kEscape = '\x1b';
constexpr char kBell = '\a';
constexpr char kCancel = '\x18';
constexpr char kSubstitute = '\x1a';
/// Sequences with more than that set no mode that matters.
constexpr std::size_t kMaxParameters = 64;
/// The beginning of a string tells what it is about.
constexpr std::size_t kMaxString = 32;
/// A request may hold all that a terminal keeps for a program, in hexadecimal digits.
constexpr std::size_t kMaxRequest = 8300;
/// More requests at once than anybody makes.
constexpr std::size_t kMaxRequests = 16;
constexpr std::string_view kRequest = "]7717;";
constexpr std::size_t kLongestCharacter = 4;
constexpr char32_t kReplacement = U'\uFFFD';

bool isContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0u) == 0x80;
}

bool isControl(char byte) {
  return static_cast<unsigned char>(byte) < 0x20 || byte == '\x7f';
}

/// The bytes of the character that begins with this one.
std::size_t sizeOf(char first) {
  const auto byte = static_cast<unsigned char>(first);
  if (byte < 0xC0) return 1;
  if (byte < 0xE0) return 2;
  return byte < 0xF0 ? 3 : kLongestCharacter;
}

bool isAlternateScreenMode(int mode) {
  return mode == 47 || mode == 1047 || mode == 1049;
}

bool beginsString(char byte) {
  // OSC, DCS, APC, PM, SOS, and the title of a window in a window manager for terminals.
  return std::string_view("]P_^Xk").find(byte) != std::string_view::npos;
}

/// Shells that mark their prompts say so when one begins.
bool marksPrompt(std::string_view string) {
  return string == "]133;A" || string.starts_with("]133;A;");
}

/// To the first place of the screen, which is cleared from there, by a line editor too.
bool isHome(std::string_view parameters) {
  return parameters.empty() || parameters == "1" || parameters == "1;1" || parameters == ";";
}

}  // namespace

void ProgramOutput::feed(std::string_view bytes) {
  while (!bytes.empty()) {
    if (state_ == State::text && character_.empty()) {
      const auto text = bytes.substr(0, bytes.find(kEscape));
      feedText(text);
      bytes.remove_prefix(text.size());
      if (bytes.empty()) return;
    }
    feedByte(bytes.front());
    bytes.remove_prefix(1);
  }
}

void ProgramOutput::feedText(std::string_view text) {
  if (!screen_.remembers()) {
    // Most output is text that nobody waits for: only its last line tells where the cursor is.
    const auto lineStart = text.rfind('\r');
    if (lineStart != std::string_view::npos) {
      screen_.skipToColumn(0);
      text.remove_prefix(lineStart + 1);
    }
  }
  for (const char byte : text)
    feedTextByte(byte);
}

void ProgramOutput::feedByte(char byte) {
  switch (state_) {
    case State::text:
      return feedTextByte(byte);
    case State::escape:
    case State::intermediate:
      return feedEscape(byte);
    case State::sequence:
      return feedSequence(byte);
    case State::string:
      return feedString(byte);
    case State::stringEscape:
      // ESC \ ends a string; any other ESC breaks it off and begins something of its own.
      state_ = State::text;
      if (byte == '\\') return endString();
      return feedEscape(byte);
  }
}

void ProgramOutput::feedTextByte(char byte) {
  if (!isControl(byte)) return putByte(byte);
  character_.clear();
  if (byte == kEscape) {
    state_ = State::escape;
  } else {
    screen_.control(byte);
  }
}

void ProgramOutput::putByte(char byte) {
  if (static_cast<unsigned char>(byte) < 0x80) {
    character_.clear();
    return screen_.put(static_cast<char32_t>(byte));
  }
  if (!isContinuation(byte)) character_.clear();
  character_.push_back(byte);
  if (character_.size() < sizeOf(character_.front())) return;
  const auto scalar = text::singleScalar(character_);
  screen_.put(scalar.value_or(kReplacement));
  character_.clear();
}

void ProgramOutput::feedEscape(char byte) {
  // Intermediate bytes, such as those that choose a character set.
  if (byte >= '\x20' && byte <= '\x2f') {
    state_ = State::intermediate;
    intermediate_ = byte;
    return;
  }
  const bool isPlain = state_ != State::intermediate;
  state_ = State::text;
  if (byte == kEscape) {
    state_ = State::escape;
  } else if (!isPlain) {
    screen_.designate(intermediate_, byte);
  } else if (byte == '[') {
    parameters_.clear();
    state_ = State::sequence;
  } else if (beginsString(byte)) {
    string_.assign(1, byte);
    state_ = State::string;
  } else {
    if (byte == '7' || byte == '8') keepsPlace_ = byte == '7';
    // A full reset.
    if (byte == 'c') {
      setAlternateScreen(false);
      wantsBrackets_ = keepsPlace_ = false;
      keyboardModes_.reset();
    }
    screen_.escape(byte);
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
  } else if (isControl(byte)) {
    // Terminals obey a control character in the midst of a sequence.
    screen_.control(byte);
  } else if (parameters_.size() < kMaxParameters) {
    parameters_.push_back(byte);
  }
}

void ProgramOutput::feedString(char byte) {
  if (byte == kEscape) {
    state_ = State::stringEscape;
  } else if (byte == kBell) {
    state_ = State::text;
    endString();
  } else if (byte == kCancel || byte == kSubstitute) {
    state_ = State::text;
  } else if (string_.size() < (string_.starts_with(kRequest) ? kMaxRequest : kMaxString)) {
    string_.push_back(byte);
  }
}

void ProgramOutput::endString() {
  if (marksPrompt(string_)) sawPrompt_ = true;
  if (string_.starts_with(kRequest) && requests_.size() < kMaxRequests) {
    requests_.push_back(string_.substr(kRequest.size()));
  }
}

void ProgramOutput::endSequence(char final) {
  if ((final == 'h' || final == 'l') && parameters_.starts_with('?')) {
    return setPrivateModes(final == 'h');
  }
  const bool isPlace = final == 'H' || final == 'f';
  if ((final == 'd' || (isPlace && !isHome(parameters_))) && !keepsPlace_) sawAddressing_ = true;
  if (parameters_.empty() && (final == 's' || final == 'u')) keepsPlace_ = final == 's';
  keyboardModes_.note(
      parameters_, final,
      alternateScreen_ ? KeyboardModes::Screen::alternate : KeyboardModes::Screen::main);
  screen_.sequence(parameters_, final);
}

void ProgramOutput::setPrivateModes(bool on) {
  const auto* next = parameters_.data() + 1;
  const auto* const end = parameters_.data() + parameters_.size();
  while (next < end) {
    int mode = 0;
    next = std::from_chars(next, end, mode).ptr;
    setPrivateMode(mode, on);
    next = std::find(next, end, ';');
    if (next != end) ++next;
  }
}

void ProgramOutput::setAlternateScreen(bool on) {
  if (std::exchange(alternateScreen_, on) == on) return;
  if (on) {
    screen_.fill();
  } else {
    screen_.endFilling();
  }
}

void ProgramOutput::setPrivateMode(int mode, bool on) {
  constexpr int kBracketedPaste = 2004;
  if (isAlternateScreenMode(mode)) setAlternateScreen(on);
  screen_.setPrivateMode(mode, on);
  if (mode != kBracketedPaste) return;
  wantsBrackets_ = on;
  if (on) sawPrompt_ = true;
}

}  // namespace tessarok::terminal

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tessarok::terminal {

/// Watches what the program writes to the terminal, for the two things that a desktop without
/// eyes has to know: whether the alternate screen is shown, and whether typed characters appear.
/// Bytes may come in pieces of any size. Main thread.
class ProgramOutput final {
 public:
  void feed(std::string_view bytes);
  /// A program has the whole screen, such as an editor.
  [[nodiscard]] bool isAlternateScreen() const { return alternateScreen_; }

  /// A character was typed that ought to appear. Characters are looked for in the order in which
  /// they were typed, with anything in between: line editors repaint and colour as they like.
  void expectEcho(std::string_view character);
  /// The last character that was typed was erased again.
  void expectErased();
  /// Nothing that was typed so far matters any more.
  void forgetEcho();
  /// The characters expected last have appeared, all of them.
  [[nodiscard]] bool hasEchoed() const { return hasEchoed_; }
  /// Every character expected has appeared.
  [[nodiscard]] bool isEchoComplete() const { return matched_ == expected_.size(); }

 private:
  enum class State { text, escape, sequence, string, stringEscape };

  void feedByte(char byte);
  void feedText(char byte);
  void feedEscape(char byte);
  void feedSequence(char byte);
  void endSequence(char final);
  void setPrivateModes(bool on);

  State state_ = State::text;
  std::string parameters_;
  bool alternateScreen_ = false;
  /// UTF-8 of what was typed and is not known to have appeared.
  std::string expected_;
  /// Bytes of `expected_` that have appeared: whole characters, and part of the next one.
  std::size_t matched_ = 0;
  bool hasEchoed_ = false;
};

}  // namespace tessarok::terminal

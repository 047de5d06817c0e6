#pragma once

#include <functional>
#include <optional>

#include "desktops/posix/WriteQueue.h"
#include "desktops/terminal/InputItem.h"
#include "desktops/terminal/KeyReader.h"
#include "desktops/terminal/OuterLayout.h"
#include "desktops/terminal/ProgramOutput.h"
#include "desktops/terminal/Pty.h"
#include "desktops/terminal/TerminalDesktop.h"
#include "desktops/terminal/TerminalEvent.h"

namespace tessarok::terminal {

/// What becomes of one input item: whether its key goes through the tap, and what the program in
/// the pseudo-terminal gets for it. Main thread.
///
/// Three kinds of bytes never see the tap: answers of the terminal, everything while the alternate
/// screen is shown, and nothing but their existence is told of characters of a password, or of
/// those that could not be taken back.
///
/// A program that reads raw keys may be asking for a secret without saying so. There a word is
/// judged only when all of its characters have appeared on the screen: `needsEchoFirst` says that
/// some are still missing, and either the echo comes or `giveUpEcho` makes the word unknown.
class Keys final {
 public:
  /// All outlive this object; what the program is to get is added to `toProgram`.
  Keys(TerminalDesktop& desktop, const Pty& pty, ProgramOutput& output,
       posix::WriteQueue& toProgram);

  /// The item would end a word that has not appeared yet: it is to wait for the echo.
  [[nodiscard]] bool needsEchoFirst(const InputItem& item);
  /// The echo did not come in time.
  void giveUpEcho();
  void press(const InputItem& item);

 private:
  void pressSecretly(const InputItem& item);
  void pressKey(const InputItem& item, const PtyModes& modes);
  void pressControlSpace();
  void pressUnedited();
  void expectEcho(const InputItem& item, const PtyModes& modes);
  void send();
  void deliver(const TerminalEvent& event);

  TerminalDesktop& desktop_;
  const Pty& pty_;
  ProgramOutput& output_;
  posix::WriteQueue& toProgram_;
  OuterLayout outer_;
  KeyReader reader_{outer_};
  /// The key in hand; a member only to keep its storage.
  TerminalEvent event_;
  std::string text_;
  /// The erase character in force.
  char erase_ = 0;
  /// The program has shown what was typed lately, so it is worth waiting for.
  bool expectsEcho_ = true;
};

}  // namespace tessarok::terminal

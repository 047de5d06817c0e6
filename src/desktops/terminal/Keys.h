#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <sys/types.h>

#include "desktops/posix/WriteQueue.h"
#include "desktops/terminal/HotKeys.h"
#include "desktops/terminal/InputItem.h"
#include "desktops/terminal/KeyReader.h"
#include "desktops/terminal/OuterLayout.h"
#include "desktops/terminal/ProgramOutput.h"
#include "desktops/terminal/Pty.h"
#include "desktops/terminal/Retyping.h"
#include "desktops/terminal/TerminalDesktop.h"
#include "desktops/terminal/TerminalEvent.h"
#include "desktops/terminal/TypedLine.h"

namespace tessarok::terminal {

/// What becomes of one input item: whether its key goes through the tap, and what the program in
/// the pseudo-terminal gets for it. Main thread.
///
/// Three kinds of bytes never see the tap: answers of the terminal, everything while a program has
/// the screen for itself, and nothing but their existence is told of characters of a password, or
/// of those that could not be taken back.
///
/// A program that reads raw keys may be asking for a secret without saying so. There a word is
/// judged only when everything typed in the line has appeared on the screen: `needsEchoFirst` says
/// that some is still missing, and either the echo comes or `giveUpEcho` hides the line. For the
/// same reason the own layout, where it is not the outer one, has no say in such a line before some
/// letters have appeared: until then they go out as they came, and are typed anew when they have.
///
/// A program that fills the screen gets its keys as they come. Only what stands before the cursor
/// is converted by hand; and in programs that the person has named, words are put right as
/// elsewhere, when they stand on the screen as they were typed.
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

  /// The program has written something.
  void noteOutput();
  /// Everything typed has appeared.
  [[nodiscard]] bool isEchoComplete();
  /// It seems to have; `settle` after a moment says so if nothing has changed.
  [[nodiscard]] bool seemsEchoed() const { return line_.seemsShown(); }
  void settle();

  /// A text was erased and its new form is still to be typed, before which no key may be pressed.
  [[nodiscard]] bool isRetyping() const { return retyping_.isUnderWay(); }
  /// It has taken too long.
  void stopRetyping() { retyping_.stopWaiting(); }

  /// The person asks for the other layout, by a key or a command.
  void toggleLayout();
  /// The own layout types Russian into the program that reads the keys.
  [[nodiscard]] bool typesRussian() const;

 private:
  /// How the program reads its terminal, as far as one way ends a line that was typed for another.
  enum class Reading { unknown, lines, secretLines, keys, unedited };

  [[nodiscard]] bool isCommandLine() const;
  void expectCommand();
  [[nodiscard]] platform::TextContext::Part partInHand() const;
  [[nodiscard]] bool hasScreenForItself(const PtyModes* modes) const;
  [[nodiscard]] bool mayTranslate() const;
  [[nodiscard]] bool goesAsItCame(const PtyModes& modes) const;
  void noticeProgram(const PtyModes* modes);
  void goHomeIfDue(const InputItem& item);
  void endLine();
  /// The program is one of those that are corrected though they fill the screen.
  [[nodiscard]] bool isNamed() const;
  void setAddressing(pid_t group);
  void pressOnScreen(const InputItem& item, const PtyModes& modes);
  [[nodiscard]] bool convertOnScreen(HotKeys::Press press, bool isWatched);
  void showToTap(std::u32string_view word);
  [[nodiscard]] std::u32string_view lastWordOfRun() const;
  [[nodiscard]] bool isRunShown() const;
  void followScreen();
  void finishOnScreen(std::u32string_view shown, std::string_view original);
  void deliverOnScreen(const TerminalEvent& event);
  void addToRun(std::string_view text);
  void pressHidden(const InputItem& item, const PtyModes* modes);
  void pressKey(const InputItem& item, const PtyModes& modes);
  void pressHotKey(HotKeys::Press press);
  [[nodiscard]] bool mayRetype(const InputItem& item) const;
  void pressUnknown(const InputItem& item);
  void pressAsItCame(const InputItem& item);
  [[nodiscard]] bool pressQuote(const InputItem& item);
  [[nodiscard]] bool pressDollar(const InputItem& item);
  void goHomeBehindText();
  void goHomeWithinLine();
  [[nodiscard]] bool continuesTornWord(const InputItem& item);
  void translateSent();
  void followLine(const InputItem& item, const PtyModes& modes);
  void send();
  void deliver(const TerminalEvent& event);
  void sendErase();
  void sendText(std::string_view text);

  TerminalDesktop& desktop_;
  const Pty& pty_;
  ProgramOutput& output_;
  posix::WriteQueue& toProgram_;
  HotKeys hotKeys_;
  OuterLayout outer_;
  KeyReader reader_{outer_};
  TypedLine line_;
  /// The key in hand; a member only to keep its storage.
  TerminalEvent event_;
  std::string text_;
  /// The erase character in force.
  char erase_ = 0;
  /// The program has shown what was typed lately, so it is worth waiting for.
  bool expectsEcho_ = true;
  /// Characters at the end of the line that went out as they came, to be translated when shown.
  std::u32string untranslated_;
  Reading reading_ = Reading::unknown;
  /// The process group that reads the keys.
  pid_t readingGroup_ = -1;
  /// The program that leads it.
  std::string program_;
  /// The one that moves the cursor about as programs do that fill the screen; -1 for none.
  pid_t addressingGroup_ = -1;
  Retyping retyping_;
  /// The key in hand is for a program that fills the screen.
  bool isOnScreen_ = false;
  /// What was typed into a named one of those since a key whose effect is not known.
  std::u32string run_;
  /// What the tap has made of the key in hand there: characters to be erased, and text to be typed.
  std::size_t erases_ = 0;
  std::string retyped_;
  /// The tap is shown what stands on the screen already.
  bool isShowing_ = false;
  /// The release of the key that converts by hand is this program's too.
  bool hasConverted_ = false;
  /// The word under way was begun for a line editor, and goes on in a line that the kernel edits:
  /// the kernel takes back what was typed since only.
  bool isWordTorn_ = false;
  /// The own layout is to go home as soon as no word is under way.
  bool homeIsDue_ = false;
};

}  // namespace tessarok::terminal

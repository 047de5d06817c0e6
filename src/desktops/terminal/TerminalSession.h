#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

#include "desktops/posix/CallbackSource.h"
#include "desktops/posix/SignalPipe.h"
#include "desktops/posix/WriteQueue.h"
#include "desktops/terminal/InputDecoder.h"
#include "desktops/terminal/Keys.h"
#include "desktops/terminal/LayoutSign.h"
#include "desktops/terminal/OuterTerminal.h"
#include "desktops/terminal/PasteBySize.h"
#include "desktops/terminal/ProgramOutput.h"
#include "desktops/terminal/Pty.h"
#include "desktops/terminal/Requests.h"
#include "desktops/terminal/TerminalDesktop.h"

namespace tessarok::terminal {

/// Moves the bytes between the person's terminal and a program in a pseudo-terminal, until one of
/// them ends. Memory is bounded: keys are not read while the program does not read, and its output
/// is not read while the terminal takes none. Main thread.
///
/// A paste is known by its brackets or by its size: no person types hundreds of bytes at once, nor
/// dozens where a terminal was not asked for brackets. Either way it passes as it is.
class TerminalSession final {
 public:
  /// All outlive this object.
  TerminalSession(TerminalDesktop& desktop, AppDelegate& delegate, OuterTerminal& outer, Pty& pty);
  TerminalSession(const TerminalSession&) = delete;
  TerminalSession& operator=(const TerminalSession&) = delete;
  ~TerminalSession();

  /// Returns the program's exit status as a shell gives it; 128 and the signal's number when a
  /// signal has ended this program, or the terminal has gone, before the other one.
  [[nodiscard]] int run();

  /// Called once, when there is a key for the first time, before it is read.
  std::function<void()> onFirstKey;

 private:
  [[nodiscard]] bool readsInput() const;
  [[nodiscard]] bool mustKeysWait() const;
  [[nodiscard]] short programEvents() const;

  void handleSignal(int signal);
  void resize();
  void stop();
  void endIfProgramEnded();
  /// Writes everything to the screen, waiting as long as it takes, or until a signal wants the end.
  /// False when it takes nothing any more.
  [[nodiscard]] bool finishScreen();
  void end(int exitStatus);
  void tidyScreen();

  void readInput();
  /// The bytes that came; 0 when the terminal has gone.
  [[nodiscard]] std::size_t readMore();
  void serveInput();
  void pressKeys();
  void press(const InputItem& item);
  void waitForEcho(const InputItem& item);
  void waitToSettle();
  void echoCame();
  void waitForRest();
  void flushToProgram();

  void serveProgram(short events);
  void serveOutput();
  void programHasLeft();
  /// False when there is nothing to read, now or ever.
  [[nodiscard]] bool readProgram();
  void flushScreen();
  void showLayout();

  TerminalDesktop& desktop_;
  OuterTerminal& outer_;
  Pty& pty_;
  posix::SignalPipe signals_;
  posix::CallbackSource input_;
  posix::CallbackSource program_;
  posix::CallbackSource screen_;
  posix::WriteQueue toProgram_;
  posix::WriteQueue toScreen_;
  InputDecoder decoder_;
  PasteBySize paste_;
  ProgramOutput output_;
  Keys keys_;
  Requests requests_;
  LayoutSign sign_;
  /// The item that waits for an echo; nothing behind it is served.
  std::optional<InputItem> held_;
  /// The echo came while keys had to wait for something else.
  bool isEchoLate_ = false;
  /// Tells a time-out from those of earlier waits.
  std::uint64_t echoWait_ = 0;
  std::uint64_t restWait_ = 0;
  std::uint64_t retypingWait_ = 0;
  /// Everything in the decoder is served, as far as it is complete.
  bool isDrained_ = true;
  /// Nothing more will come from the program.
  bool isProgramGone_ = false;
  std::optional<int> exitStatus_;
  /// The end has begun, and nothing more is asked of the program.
  bool isEnding_ = false;
  /// The program may have left the screen in a mess.
  bool isUntidy_ = false;
  /// A signal wants the end at once.
  bool isHurried_ = false;
  std::array<char, 16384> chunk_;
};

}  // namespace tessarok::terminal

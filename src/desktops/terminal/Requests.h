#pragma once

#include <deque>
#include <functional>
#include <string>
#include <string_view>

#include "app/AppDelegate.h"
#include "desktops/posix/WriteQueue.h"
#include "desktops/terminal/Keys.h"
#include "desktops/terminal/TerminalDesktop.h"

namespace tessarok::terminal {

/// What a program asks of the corrected terminal that it runs in, by sequences of its own:
/// "ESC ] 7717 ; REQUEST BEL", where REQUEST is "on", "off", "layout", "pause" or "status". Each is
/// answered by "ESC ] 7717 ; tessarok ; on|off ; en|ru ESC \", which tells nothing of what was
/// typed. Main thread.
///
/// The answer comes among the keys, and who reads it reads keys as well. So with ";wait" behind a
/// request the answer has one part more, a number, and keys wait until "go;NUMBER;BYTES", in
/// hexadecimal digits, gives back what was read. A program must not type into the shell that it was
/// started from: taken is only what the person has just typed, and only from who knows the number,
/// which a text with such sequences in it, that is only shown, does not.
class Requests final {
 public:
  /// All outlive this object; answers are added to `toProgram`, which is watched.
  Requests(TerminalDesktop& desktop, AppDelegate& delegate, Keys& keys,
           posix::WriteQueue& toProgram);

  void serve(const std::string& request);
  /// Who has asked is reading; for a second at most.
  [[nodiscard]] bool makeKeysWait() const { return isWaiting_; }

  /// Called when they need not wait any more.
  std::function<void()> onGo;

 private:
  struct Answered {
    std::string number;
    /// What had been typed just before.
    std::string typed;
  };

  [[nodiscard]] bool carryOut(std::string_view request);
  [[nodiscard]] std::string wait();
  void go(std::string_view numberAndBytes);
  void giveBack(const Answered& answered, std::string_view digits);
  void endWaiting();
  void note(std::string_view bytes);

  TerminalDesktop& desktop_;
  AppDelegate& delegate_;
  Keys& keys_;
  posix::WriteQueue& toProgram_;
  /// What the program got last of the person's keys, and when, in seconds of uptime.
  std::string typed_;
  double typedAt_ = 0;
  /// Those that may still give something back; the last ones.
  std::deque<Answered> answered_;
  bool isWaiting_ = false;
  bool isAnswering_ = false;
};

}  // namespace tessarok::terminal

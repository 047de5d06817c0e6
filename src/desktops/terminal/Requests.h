#pragma once

#include <functional>
#include <string>
#include <string_view>

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
/// hexadecimal digits, gives back what was read. The number keeps a text with such sequences in it,
/// which is only shown, from typing into a shell: it would have to read the answer.
class Requests final {
 public:
  /// All outlive this object; answers are added to `toProgram`.
  Requests(TerminalDesktop& desktop, Keys& keys, posix::WriteQueue& toProgram);

  void serve(const std::string& request);
  /// Who has asked is reading; for a second at most.
  [[nodiscard]] bool makeKeysWait() const { return !number_.empty(); }

  /// Called when they need not wait any more.
  std::function<void()> onGo;

 private:
  [[nodiscard]] bool carryOut(std::string_view request);
  void wait();
  void go(std::string_view numberAndBytes);

  TerminalDesktop& desktop_;
  Keys& keys_;
  posix::WriteQueue& toProgram_;
  /// Of the answer that is being read; empty when none is.
  std::string number_;
};

}  // namespace tessarok::terminal

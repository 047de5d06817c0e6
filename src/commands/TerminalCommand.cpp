#include "commands/TerminalCommand.h"

#include <cstdlib>
#include <iostream>
#include <variant>

#include "app/Corrector.h"
#include "commands/CommandError.h"
#include "desktops/posix/PersonsEnvironment.h"
#include "desktops/terminal/LoginShell.h"
#include "desktops/terminal/OuterTerminal.h"
#include "desktops/terminal/Pty.h"
#include "desktops/terminal/TerminalDesktop.h"
#include "desktops/terminal/TerminalSession.h"
#include "words/Dict.h"

namespace tessarok::commands {

namespace {

using terminal::OuterTerminal;
using terminal::Pty;
using terminal::TerminalDesktop;
using terminal::TerminalSession;

/// There is no icon to say it.
void warnIfDataIsMissing(TerminalDesktop& desktop) {
  if (Dict::en().isAvailable() && Dict::ru().isAvailable()) return;
  desktop.systemLog().write(
      "Tessarok: the word data is missing; automatic correction is off, ⌥Space works");
}

/// In the environment of what runs in a corrected terminal.
constexpr const char* kNested = "TESSAROK_TERMINAL";

/// Becomes the program: two correctors, one in the other, would fix every word twice.
int runPlainly(const std::vector<std::string>& command) {
  std::cerr << "tessarok: this terminal is corrected already; " << command.front()
            << " runs in it as it is" << std::endl;
  const auto failure = Pty::become(command);
  std::cerr << "tessarok: " << failure.reason << '\n';
  return failure.exitStatus;
}

int correct(const Options& options, OuterTerminal& outer, Pty& pty) {
  TerminalDesktop desktop(options.resources);
  platform::setDesktop(desktop);
  Corrector corrector(AppDelegate::Instances::many);
  corrector.launch();
  warnIfDataIsMissing(desktop);
  TerminalSession session(desktop, outer, pty);
  return session.run();
}

}  // namespace

bool isTerminal() {
  return OuterTerminal::isStandardInput();
}

int runTerminal(const Options& options, const TerminalOptions& terminal) {
  if (!isTerminal()) throw CommandError("standard input is not a terminal");
  const auto command =
      terminal.command.empty() ? std::vector{terminal::loginShell()} : terminal.command;
  if (posix::personsVariable(kNested).value_or("") != "") return runPlainly(command);
  OuterTerminal outer;
  ::setenv(kNested, "1", 1);
  // Started before the corrector, whose threads a new process would not have.
  auto started = Pty::start(command, outer.settings(), outer.size());
  if (const auto* failure = std::get_if<Pty::Failure>(&started)) {
    std::cerr << "tessarok: " << failure->reason << '\n';
    return failure->exitStatus;
  }
  return correct(options, outer, std::get<Pty>(started));
}

}  // namespace tessarok::commands

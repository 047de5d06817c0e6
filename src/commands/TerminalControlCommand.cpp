#include "commands/TerminalControlCommand.h"

#include <iostream>
#include <optional>

#include "commands/CommandError.h"
#include "desktops/terminal/OuterTerminal.h"

namespace tessarok::commands {

namespace {

constexpr int kNoAnswer = 1;
constexpr std::string_view kAnswer = "\x1b]7717;tessarok;";

}  // namespace

int runTerminalControl(const std::string& request) {
  if (!terminal::OuterTerminal::isStandardInput()) {
    throw CommandError("standard input is not a terminal");
  }
  const auto answer =
      terminal::OuterTerminal::ask("\x1b]7717;" + request + "\a", kAnswer, "\x1b\\");
  if (!answer) {
    std::cerr << "tessarok: no corrected terminal answers\n";
    return kNoAnswer;
  }
  const bool isOn = answer->starts_with("on");
  const bool isRussian = answer->ends_with("ru");
  std::cout << "correction " << (isOn ? "on" : "off") << ", layout "
            << (isRussian ? "Russian" : "English") << '\n';
  return 0;
}

}  // namespace tessarok::commands

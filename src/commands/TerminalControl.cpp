#include "commands/TerminalControl.h"

#include <string_view>

#include "desktops/posix/PersonsEnvironment.h"
#include "desktops/posix/Translation.h"
#include "desktops/terminal/OuterTerminal.h"

namespace tessarok::commands {

namespace {

constexpr std::string_view kAnswer = "\x1b]7717;tessarok;";
/// Milliseconds for an answer: of a terminal at the other end of a slow line, and of one that
/// nothing speaks for.
constexpr int kPatience = 1000;
constexpr int kLittlePatience = 150;

bool isSet(const char* variable) {
  return posix::personsVariable(variable).value_or("") != "";
}

}  // namespace

std::string describe(const TerminalStatus& status) {
  return posix::translated("this terminal: correction {1}, layout {2}",
                           {status.isOn ? posix::translated("on") : posix::translated("off"),
                            status.layout == Language::russian ? posix::translated("Russian")
                                                               : posix::translated("English")});
}

std::optional<TerminalStatus> askTerminal(const std::string& request) {
  if (!terminal::OuterTerminal::isStandardInput()) return std::nullopt;
  const bool isLikely = isSet("TESSAROK_TERMINAL") || isSet("SSH_TTY");
  const auto answer = terminal::OuterTerminal::ask("\x1b]7717;" + request + "\a", kAnswer, "\x1b\\",
                                                   isLikely ? kPatience : kLittlePatience);
  if (!answer) return std::nullopt;
  return TerminalStatus{.isOn = answer->starts_with("on"),
                        .layout = answer->ends_with("ru") ? Language::russian : Language::english};
}

}  // namespace tessarok::commands

#include "commands/TerminalControl.h"

#include <string_view>

#include "desktops/posix/PersonsEnvironment.h"
#include "desktops/posix/Translation.h"
#include "desktops/terminal/CorrectedMark.h"
#include "desktops/terminal/Multiplexer.h"
#include "desktops/terminal/OuterTerminal.h"

namespace tessarok::commands {

namespace {

using terminal::CorrectedMark;
using terminal::Multiplexer;
using terminal::OuterTerminal;

constexpr std::string_view kAnswer = "\x1b]7717;tessarok;";
/// Milliseconds for an answer: of a terminal at the other end of a slow line, and of one that
/// nothing speaks for.
constexpr int kPatience = 1000;
constexpr int kLittlePatience = 150;

/// Absent when nothing answers, or nothing that corrects.
std::optional<TerminalStatus> statusOf(const OuterTerminal::Question& question) {
  const auto answer = OuterTerminal::ask(question);
  if (!answer) return std::nullopt;
  return TerminalStatus{.isOn = answer->starts_with("on"),
                        .layout = answer->ends_with("ru") ? Language::russian : Language::english};
}

}  // namespace

std::string describe(const TerminalStatus& status) {
  return posix::translated("this terminal: correction {1}, layout {2}",
                           {status.isOn ? posix::translated("on") : posix::translated("off"),
                            status.layout == Language::russian ? posix::translated("Russian")
                                                               : posix::translated("English")});
}

std::optional<TerminalStatus> askTerminal(const std::string& request) {
  if (!OuterTerminal::isStandardInput()) return std::nullopt;
  const auto mark = CorrectedMark::find();
  const bool isRemote = posix::personsVariable("SSH_TTY").value_or("") != "";
  const bool isWindow = !Multiplexer::window().empty();
  const bool isLikely = mark == CorrectedMark::Place::here || (isRemote && !isWindow);
  const auto sequence = "\x1b]7717;" + request + "\a";
  OuterTerminal::Question question{.text = sequence,
                                   .before = kAnswer,
                                   .after = "\x1b\\",
                                   .patience = isLikely ? kPatience : kLittlePatience};
  if (const auto status = statusOf(question)) return status;
  const auto around = Multiplexer::aroundWindow();
  if (!around) return std::nullopt;
  const auto wrapped = around->wrapped(sequence);
  question.text = wrapped;
  question.output = around->output();
  if (mark == CorrectedMark::Place::around || isRemote) question.patience = kPatience;
  return statusOf(question);
}

}  // namespace tessarok::commands

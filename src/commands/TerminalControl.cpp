#include "commands/TerminalControl.h"

#include <string_view>

#include "desktops/posix/PersonsEnvironment.h"
#include "desktops/posix/Translation.h"
#include "desktops/posix/WriteQueue.h"
#include "desktops/terminal/CorrectedMark.h"
#include "desktops/terminal/Multiplexer.h"
#include "desktops/terminal/OuterTerminal.h"
#include "desktops/terminal/TerminalQuestion.h"
#include "text/Hex.h"

namespace tessarok::commands {

namespace {

using terminal::CorrectedMark;
using terminal::Multiplexer;
using terminal::OuterTerminal;
using terminal::TerminalQuestion;

constexpr std::string_view kAnswer = "\x1b]7717;tessarok;";
constexpr std::string_view kAnswerEnd = "\x1b\\";
/// Milliseconds for an answer: of a terminal at the other end of a slow line, and of one that
/// nothing speaks for.
constexpr int kPatience = 1000;
constexpr int kLittlePatience = 150;

/// A way to a terminal that may be corrected.
struct Way {
  int output = OuterTerminal::input();
  /// Around which sequences have to be wrapped.
  const Multiplexer* around = nullptr;

  [[nodiscard]] std::string sequence(const std::string& request) const {
    const auto bare = "\x1b]7717;" + request + "\a";
    return around == nullptr ? bare : around->wrapped(bare);
  }
};

/// Lets keys go on, those that were read first.
void giveBack(const Way& way, std::string_view number, const std::string& keys) {
  posix::WriteQueue out(way.output);
  out.add(way.sequence("go;" + std::string(number) + ";" + text::hexOf(keys)));
  // Else the terminal has gone.
  static_cast<void>(out.flushWaiting());
}

/// Absent when nothing answers, or nothing that corrects.
std::optional<TerminalStatus> statusBy(const Way& way, const std::string& request, int patience) {
  const auto question = way.sequence(request + ";wait");
  const auto answer = TerminalQuestion{.text = question,
                                       .before = kAnswer,
                                       .after = kAnswerEnd,
                                       .patience = patience,
                                       .output = way.output}
                          .ask();
  if (!answer) return std::nullopt;
  // "on;ru;NUMBER"
  const auto& text = answer->text;
  giveBack(way, std::string_view(text).substr(text.rfind(';') + 1), answer->keys);
  return TerminalStatus{
      .isOn = text.starts_with("on"),
      .layout = text.find(";ru") != std::string::npos ? Language::russian : Language::english};
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
  if (const auto status = statusBy({}, request, isLikely ? kPatience : kLittlePatience)) {
    return status;
  }
  const auto around = Multiplexer::aroundWindow();
  if (!around) return std::nullopt;
  const bool isLikelyAround = mark == CorrectedMark::Place::around || isRemote;
  return statusBy({.output = around->output(), .around = &*around}, request,
                  isLikelyAround ? kPatience : kLittlePatience);
}

}  // namespace tessarok::commands

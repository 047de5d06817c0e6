#include "commands/TerminalCommand.h"

#include <chrono>
#include <clocale>
#include <cstdlib>
#include <future>
#include <iostream>
#include <langinfo.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "app/Corrector.h"
#include "commands/CommandError.h"
#include "commands/PersonsFiles.h"
#include "desktops/posix/ThreadQueue.h"
#include "desktops/posix/Translation.h"
#include "desktops/posix/WriteSignals.h"
#include "desktops/terminal/CorrectedMark.h"
#include "desktops/terminal/LoginShell.h"
#include "desktops/terminal/OuterTerminal.h"
#include "desktops/terminal/Pty.h"
#include "desktops/terminal/TerminalDesktop.h"
#include "desktops/terminal/TerminalSession.h"
#include "words/Dict.h"
#include "words/ResourceLocator.h"
#include "words/UserDict.h"

namespace tessarok::commands {

namespace {

using posix::translated;
using terminal::CorrectedMark;
using terminal::OuterTerminal;
using terminal::Pty;
using terminal::TerminalDesktop;
using terminal::TerminalSession;

/// There is no icon to say it.
void sayThatDataIsMissing(TerminalDesktop& desktop) {
  desktop.systemLog().write(
      "Tessarok: " +
      translated("the word data is missing; automatic correction is off, Alt+Space works"));
}

/// The corrector does without it in silence; what is wrong with the learned lists it says itself.
void sayThatDictionaryIsNotUsed(TerminalDesktop& desktop) {
  if (const auto problem = problemWithList(desktop.files(), UserDict::fileURL())) {
    desktop.systemLog().write("Tessarok: " + *problem);
  }
}

/// Whether programs here take text for UTF-8. Others erase a Russian letter in two steps.
bool isUtf8Locale() {
  const std::string own = std::setlocale(LC_CTYPE, nullptr);
  // With one that is named but not there programs go on with the plainest, as this one does now.
  static_cast<void>(std::setlocale(LC_CTYPE, ""));
  const bool isUtf8 = std::string_view(::nl_langinfo(CODESET)) == "UTF-8";
  static_cast<void>(std::setlocale(LC_CTYPE, own.c_str()));
  return isUtf8;
}

/// Why nothing is to be corrected in this terminal; absent when there is no reason.
std::optional<std::string> obstacle() {
  // Two correctors, one in the other, would fix every word twice.
  if (CorrectedMark::find() == CorrectedMark::Place::here)
    return translated("this terminal is corrected already");
  if (!isUtf8Locale()) {
    return translated("the locale (LC_ALL, LC_CTYPE or LANG) is not one with UTF-8");
  }
  return std::nullopt;
}

/// Becomes the program.
int runPlainly(const std::vector<std::string>& command, const std::string& reason) {
  std::cerr << "tessarok: " << translated("{1}; {2} runs in it as it is", {reason, command.front()})
            << std::endl;
  const auto failure = Pty::become(command);
  std::cerr << "tessarok: " << failure.reason << '\n';
  return failure.exitStatus;
}

/// How long keys may wait for the person's settings to be read before they go without correction
/// for the time being.
constexpr auto kSettingsPatience = std::chrono::milliseconds(200);
/// Seconds in which a program that asks nothing has usually ended. To read the word data takes as
/// long, and would be for nothing.
constexpr double kShortLife = 0.03;

/// Launches a corrector before the first key, or when the program stays. Keys do not wait for a
/// slow disk.
class Start final {
 public:
  Start(TerminalDesktop& desktop, Corrector& corrector, const Pty& pty)
      : desktop_(desktop),
        corrector_(corrector),
        pty_(pty),
        lacksData_(!ResourceLocator::find("dict_en") || !ResourceLocator::find("dict_ru")) {
    // Before the screen is the program's.
    if (lacksData_) sayThatDataIsMissing(desktop_);
    desktop_.runLoop().after(kShortLife, [this] { begin(); });
  }

  void begin() {
    if (std::exchange(hasBegun_, true)) return;
    auto prepared = std::make_shared<std::promise<void>>();
    const auto isPrepared = prepared->get_future();
    queue_.async([&desktop = desktop_, prepared] {
      desktop.userDefaults().prepare();
      prepared->set_value();
    });
    if (isPrepared.wait_for(kSettingsPatience) == std::future_status::ready) {
      launch();
    } else {
      queue_.async([this] { desktop_.runLoop().async([this] { launch(); }); });
    }
  }

 private:
  void launch() {
    corrector_.launch();
    // Not before: a prompt for a password that is there already would keep the tap from starting.
    desktop_.secureInput().watch(pty_);
    const bool isAvailable = Dict::en().isAvailable() && Dict::ru().isAvailable();
    if (!isAvailable && !lacksData_) sayThatDataIsMissing(desktop_);
    queue_.async([&desktop = desktop_] { sayThatDictionaryIsNotUsed(desktop); });
  }

  TerminalDesktop& desktop_;
  Corrector& corrector_;
  const Pty& pty_;
  bool lacksData_;
  bool hasBegun_ = false;
  posix::ThreadQueue queue_;
};

int correct(const Options& options, OuterTerminal& outer, Pty& pty) {
  TerminalDesktop desktop(options.resources);
  desktop.userDefaults().leaveReadingToPrepare();
  platform::setDesktop(desktop);
  Corrector corrector(AppDelegate::Instances::many, AppDelegate::Keys::wait);
  Start start(desktop, corrector, pty);
  TerminalSession session(desktop, corrector.delegate(), outer, pty);
  session.onFirstKey = [&start] { start.begin(); };
  return session.run();
}

}  // namespace

bool isTerminal() {
  return OuterTerminal::isStandardInput();
}

int runTerminal(const Options& options, const TerminalOptions& terminal) {
  if (!isTerminal()) throw CommandError(translated("standard input is not a terminal"));
  const auto command =
      terminal.command.empty() ? std::vector{terminal::loginShell()} : terminal.command;
  if (const auto reason = obstacle()) return runPlainly(command, *reason);
  posix::ignoreWriteSignals();
  OuterTerminal outer;
  CorrectedMark::leave();
  // Started before the corrector, whose threads a new process would not have.
  auto started = Pty::start(command, outer.settings(), outer.size());
  if (const auto* failure = std::get_if<Pty::Failure>(&started)) {
    std::cerr << "tessarok: " << failure->reason << '\n';
    return failure->exitStatus;
  }
  return correct(options, outer, std::get<Pty>(started));
}

}  // namespace tessarok::commands

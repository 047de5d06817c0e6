#include "commands/DesktopCommand.h"

#include <cstdlib>
#include <exception>
#include <initializer_list>
#include <iostream>
#include <memory>
#include <signal.h>
#include <string>
#include <utility>
#include <variant>

#include "app/Corrector.h"
#include "commands/SessionStart.h"
#include "desktops/freedesktop/DesktopServices.h"
#include "desktops/posix/PosixFiles.h"
#include "desktops/posix/ProcessApplication.h"
#include "desktops/posix/SignalPipe.h"
#include "desktops/x11/Watchdog.h"
#include "desktops/x11/X11Desktop.h"
#include "desktops/x11/XConnection.h"
#include "typing/InputSource.h"
#include "words/Dict.h"
#include "words/FolderLock.h"

namespace tessarok::commands {

namespace {

using x11::X11Desktop;
using x11::XConnection;

constexpr int kNotStarted = 1;
/// As for whatever else ends the program with an error.
constexpr int kFailed = 2;
/// From the worker to the process that was started, and no further.
constexpr int kNoDesktop = 3;

void say(const std::string& message) {
  std::cerr << "tessarok: " << message << std::endl;
}

void sayNoDesktop(const std::string& reason) {
  say("cannot correct in the applications of this display: " + reason);
}

void endWithoutServer() {
  sayNoDesktop("the X server has gone");
  std::exit(kNoDesktop);
}

/// What the layouts of the display lack; empty when nothing.
std::string missingLayouts() {
  bool hasEnglish = false;
  bool hasRussian = false;
  std::string names;
  for (const auto& layout : InputSource::enabledLayouts()) {
    const auto identifier = layout->identifier().value_or("");
    hasEnglish = hasEnglish || InputSource::isInGroup(identifier, Language::english);
    hasRussian = hasRussian || InputSource::isInGroup(identifier, Language::russian);
    names += (names.empty() ? "" : ", ") + identifier;
  }
  if (hasEnglish && hasRussian) return {};
  const auto* missing = hasEnglish ? "no Russian" : hasRussian ? "no English" : "neither";
  return std::string("both an English and a Russian keyboard layout are needed, and there is ") +
         missing + " one among " + names;
}

/// There may be no icon to say it.
void sayWhatIsMissing() {
  if (!Dict::en().isAvailable() || !Dict::ru().isAvailable()) {
    say("the word data is missing; automatic correction is off, ⌥Space works");
  }
  if (const auto missing = missingLayouts(); !missing.empty()) {
    say(missing + "; waiting for them");
  }
}

int correctUntilStopped(X11Desktop& desktop) {
  auto& loop = desktop.runLoop();
  Corrector corrector(AppDelegate::Instances::onlyOne, AppDelegate::Keys::passBy);
  corrector.launch();
  if (desktop.isServerLost()) return kNoDesktop;
  if (loop.isStopped()) return kNotStarted;
  sayWhatIsMissing();
  if (corrector.delegate().tapRunning()) say("correcting in every application of this display");
  loop.run();
  return 0;
}

x11::SessionServices sessionServices(const x11::SessionContext& context) {
  const auto services = std::make_shared<freedesktop::DesktopServices>(
      context.runLoop, context.environment, context.systemLog, context.workspaceNotifications);
  return {.statusBar = &services->statusBar(),
          .secureInput = &services->secureInput(),
          .workspace = &services->workspace(),
          .owner = services};
}

/// The worker's life. The exit status.
int correct(const Options& options, StartedBy startedBy, std::unique_ptr<x11::LifeLine> lifeLine) {
  auto opened = XConnection::open(&endWithoutServer);
  if (const auto* reason = std::get_if<std::string>(&opened)) {
    if (startedBy == StartedBy::person) sayNoDesktop(*reason);
    return kNoDesktop;
  }
  // To the very end: whoever is impatient, or asks the watchdog as well, must not keep the program
  // from writing down what it has learned.
  posix::PollLoop* loop = nullptr;
  posix::SignalPipe signals({SIGTERM, SIGINT, SIGHUP, SIGQUIT}, [&loop](int) { loop->stop(); });
  X11Desktop desktop(std::move(std::get<std::unique_ptr<XConnection>>(opened)), std::move(lifeLine),
                     options.resources, &sessionServices);
  loop = &desktop.runLoop();
  loop->add(signals);
  platform::setDesktop(desktop);
  const int status = correctUntilStopped(desktop);
  loop->remove(signals);
  return status;
}

/// Nothing may leave a process that is only a part of this program but by its exit status.
int correctOrSayWhyNot(const Options& options, StartedBy startedBy,
                       std::unique_ptr<x11::LifeLine> lifeLine) {
  try {
    return correct(options, startedBy, std::move(lifeLine));
  } catch (const std::exception& error) {
    say(error.what());
    return kFailed;
  }
}

/// Any copy that sits on a whole desktop, also one inside Fcitx5.
bool doesAnotherCopyRun() {
  const auto folder = posix::PosixFiles::ofUser()->applicationSupportDirectory();
  return folder &&
         posix::ProcessApplication::holderOf(*folder / "Tessarok" / FolderLock::kInstance) > 0;
}

}  // namespace

bool hasDisplay() {
  const char* display = std::getenv("DISPLAY");
  return display != nullptr && *display != '\0';
}

std::optional<int> runDesktop(const Options& options, StartedBy startedBy) {
  const auto work = [&](std::unique_ptr<x11::LifeLine> lifeLine) {
    return correctOrSayWhyNot(options, startedBy, std::move(lifeLine));
  };
  const auto status = x11::Watchdog::watchOver(work);
  if (status == kNoDesktop) return std::nullopt;
  if (status == kNotStarted && startedBy == StartedBy::person) {
    say("not started; is it running already?");
  }
  return status;
}

int runDesktopOfSession(const Options& options) {
  if (!hasDisplay() || isServedWithoutX11() || doesAnotherCopyRun()) return 0;
  // Of two that start at the same moment the second finds out later.
  const auto status = runDesktop(options, StartedBy::session).value_or(0);
  return status == kNotStarted ? 0 : status;
}

}  // namespace tessarok::commands

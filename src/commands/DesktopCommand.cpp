#include "commands/DesktopCommand.h"

#include <cstdlib>
#include <initializer_list>
#include <iostream>
#include <memory>
#include <signal.h>
#include <string>
#include <utility>
#include <variant>

#include "Dict.h"
#include "InputSource.h"
#include "commands/Corrector.h"
#include "platform/freedesktop/DesktopServices.h"
#include "platform/posix/SignalPipe.h"
#include "platform/x11/Watchdog.h"
#include "platform/x11/X11Desktop.h"
#include "platform/x11/XConnection.h"

namespace tessarok::commands {

namespace {

using x11::X11Desktop;
using x11::XConnection;

constexpr int kNotStarted = 1;

void say(const std::string& message) {
  std::cerr << "tessarok: " << message << std::endl;
}

/// What the layouts of the display lack; empty when nothing.
std::string missingLayouts() {
  bool hasEnglish = false;
  bool hasRussian = false;
  std::string names;
  for (const auto& layout : InputSource::enabledLayouts()) {
    const auto identifier = layout->identifier().value_or("");
    hasEnglish = hasEnglish || InputSource::isInGroup(identifier, false);
    hasRussian = hasRussian || InputSource::isInGroup(identifier, true);
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
  Corrector corrector(AppDelegate::Instances::onlyOne);
  corrector.launch();
  if (loop.isStopped()) {
    say("not started; is it running already?");
    return kNotStarted;
  }
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

int correct(X11Desktop& desktop) {
  auto& loop = desktop.runLoop();
  posix::SignalPipe signals({SIGTERM, SIGINT, SIGHUP, SIGQUIT}, [&loop](int) { loop.stop(); });
  loop.add(signals);
  const int status = correctUntilStopped(desktop);
  loop.remove(signals);
  return status;
}

}  // namespace

bool hasDisplay() {
  const char* display = std::getenv("DISPLAY");
  return display != nullptr && *display != '\0';
}

std::optional<int> runDesktop(const Options& options) {
  // Before there is a connection, or a thread, that both processes would have.
  auto watchdog = std::make_unique<x11::Watchdog>();
  auto opened = XConnection::open();
  if (const auto* reason = std::get_if<std::string>(&opened)) {
    say("cannot correct in the applications of this display: " + *reason);
    return std::nullopt;
  }
  X11Desktop desktop(std::move(std::get<std::unique_ptr<XConnection>>(opened)), std::move(watchdog),
                     options.resources, &sessionServices);
  platform::setDesktop(desktop);
  return correct(desktop);
}

}  // namespace tessarok::commands

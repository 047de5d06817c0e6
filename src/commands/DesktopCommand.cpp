#include "commands/DesktopCommand.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <exception>
#include <fcntl.h>
#include <initializer_list>
#include <iostream>
#include <iterator>
#include <memory>
#include <signal.h>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <variant>
#include <vector>

#include "app/Corrector.h"
#include "commands/DesktopControl.h"
#include "commands/PersonsFiles.h"
#include "commands/SessionStart.h"
#include "desktops/freedesktop/DesktopServices.h"
#include "desktops/freedesktop/Obstacles.h"
#include "desktops/freedesktop/SessionContact.h"
#include "desktops/freedesktop/SessionKind.h"
#include "desktops/posix/FileDescriptor.h"
#include "desktops/posix/PosixFiles.h"
#include "desktops/posix/ProcessEnvironment.h"
#include "desktops/posix/Processes.h"
#include "desktops/posix/SignalPipe.h"
#include "desktops/posix/ThreadQueue.h"
#include "desktops/posix/Translation.h"
#include "desktops/x11/Watchdog.h"
#include "desktops/x11/X11Desktop.h"
#include "desktops/x11/XConnection.h"
#include "words/FolderLock.h"
#include "words/UserDict.h"

namespace tessarok::commands {

namespace {

using x11::X11Desktop;
using x11::XConnection;

constexpr int kNotStarted = 1;
/// As for whatever else ends the program with an error.
constexpr int kFailed = 2;
/// From the worker to the process that was started, and no further.
constexpr int kNoDesktop = 3;
/// The same: not started, and the person knows why.
constexpr int kSaidWhyNot = 4;

void say(const std::string& message) {
  // At once, because another thread may say something too.
  std::cerr << "tessarok: " + message + "\n" << std::flush;
}

void sayNoDesktop(const std::string& reason) {
  say(posix::translated("cannot correct in the applications of this display: {1}",
                        {posix::translatedSentence(reason)}));
}

void endWithoutServer() {
  sayNoDesktop(posix::translatable("the X server has gone"));
  std::exit(kNoDesktop);
}

/// There may be no icon to say it.
void sayWhatIsMissing() {
  if (const auto missing = freedesktop::missingWordData(); !missing.empty()) {
    say(posix::translatedSentence(missing));
  }
  if (const auto missing = freedesktop::missingLayouts(); !missing.empty()) {
    say(posix::translated("{1}; waiting for them", {posix::translatedSentence(missing)}));
  }
}

/// The corrector does without it in silence; what is wrong with the learned lists it says itself.
/// Not on the main thread, for which keys wait.
void sayThatDictionaryIsNotUsed(posix::ThreadQueue& queue, X11Desktop& desktop) {
  queue.async([&desktop] {
    if (const auto problem = problemWithList(desktop.files(), UserDict::fileURL())) say(*problem);
  });
}

std::vector<std::string> obstacles(X11Desktop& desktop, freedesktop::DesktopServices& services,
                                   const AppDelegate& delegate) {
  auto all = freedesktop::obstaclesToCorrection();
  if (!delegate.tapRunning() && !desktop.problem().empty()) all.push_back(desktop.problem());
  if (freedesktop::isWaylandSession(desktop.environment())) {
    all.emplace_back(
        freedesktop::isGnomeSession(desktop.environment())
            ? posix::translatable(
                  "this is a Wayland session: only programs that use X11 are corrected, the others "
                  "through IBus with its Tessarok engines")
            : posix::translatable(
                  "this is a Wayland session: only programs that use X11 are corrected, the others "
                  "through Fcitx5 with its Tessarok addon"));
  }
  std::ranges::move(services.obstacles(), std::back_inserter(all));
  return all;
}

int correctUntilStopped(X11Desktop& desktop, freedesktop::DesktopServices& services) {
  auto& loop = desktop.runLoop();
  // Ends behind the corrector: a disk that it waits for must not keep the keyboards held.
  posix::ThreadQueue diskQueue;
  Corrector corrector(AppDelegate::Instances::onlyOne, AppDelegate::Keys::passBy);
  corrector.launch();
  if (desktop.isServerLost()) return kNoDesktop;
  if (loop.isStopped()) return kNotStarted;
  sayWhatIsMissing();
  sayThatDictionaryIsNotUsed(diskQueue, desktop);
  auto& delegate = corrector.delegate();
  const freedesktop::SessionContact contact(
      {.session = services.session(),
       .loop = loop,
       .queue = diskQueue,
       .log = desktop.systemLog(),
       .settings = desktop.userDefaults(),
       .delegate = delegate},
      {.name = "x11", .obstacles = [&] { return obstacles(desktop, services, delegate); }},
      posix::programFileOf(::getpid()));
  if (delegate.tapRunning()) {
    say(posix::translated("correcting in every application of this display"));
  }
  loop.run();
  return 0;
}

/// Why the person's folder or the lock in it, without which nothing starts, cannot be had; absent
/// when they can.
std::optional<std::string> problemWithFolder() {
  const auto files = posix::PosixFiles::ofUser();
  const auto support = files->applicationSupportDirectory();
  if (!support) return std::nullopt;
  const auto folder = *support / "Tessarok";
  if (const auto failure = files->createDirectories(folder)) {
    return folder.string() + ": " + failure.reason();
  }
  // Opened and no more: to take the lock even for a moment could keep another copy from starting.
  const auto lock = folder / FolderLock::kInstance;
  posix::FileDescriptor file;
  do {
    file = posix::FileDescriptor(
        ::open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, S_IRUSR | S_IWUSR));
    if (file.isOpen()) return std::nullopt;
  } while (errno == EINTR);
  return lock.string() + ": " + std::generic_category().message(errno);
}

/// The worker's life. The exit status.
int correct(const Options& options, StartedBy startedBy, std::unique_ptr<x11::LifeLine> lifeLine) {
  auto opened = XConnection::open(&endWithoutServer);
  if (const auto* reason = std::get_if<std::string>(&opened)) {
    if (startedBy == StartedBy::person) sayNoDesktop(*reason);
    return kNoDesktop;
  }
  if (const auto problem = problemWithFolder()) {
    say(posix::translated("not started; cannot write {1}", {*problem}));
    return kSaidWhyNot;
  }
  // To the very end: whoever is impatient, or asks the watchdog as well, must not keep the program
  // from writing down what it has learned.
  posix::PollLoop* loop = nullptr;
  posix::SignalPipe signals({SIGTERM, SIGINT, SIGHUP, SIGQUIT}, [&loop](int) { loop->stop(); });
  // The desktop's, whose loop they use.
  freedesktop::DesktopServices* services = nullptr;
  X11Desktop desktop(std::move(std::get<std::unique_ptr<XConnection>>(opened)), std::move(lifeLine),
                     options.resources, [&services](const x11::SessionContext& context) {
                       const auto owner = std::make_shared<freedesktop::DesktopServices>(
                           context.runLoop, context.environment, context.systemLog,
                           context.workspaceNotifications);
                       services = owner.get();
                       return x11::SessionServices{.statusBar = &services->statusBar(),
                                                   .secureInput = &services->secureInput(),
                                                   .workspace = &services->workspace(),
                                                   .owner = owner};
                     });
  loop = &desktop.runLoop();
  loop->add(signals);
  platform::setDesktop(desktop);
  const int status = correctUntilStopped(desktop, *services);
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
  if (status == kSaidWhyNot) return kNotStarted;
  if (status == kNotStarted && startedBy == StartedBy::person) {
    say(posix::translated("not started; is it running already?"));
  }
  return status;
}

int runDesktopOfSession(const Options& options) {
  posix::ProcessEnvironment environment;
  if (!hasDisplay() || isServedWithoutX11(environment) || isDesktopHeld()) return 0;
  // Of two that start at the same moment the second finds out later.
  const auto status = runDesktop(options, StartedBy::session).value_or(0);
  return status == kNotStarted ? 0 : status;
}

}  // namespace tessarok::commands

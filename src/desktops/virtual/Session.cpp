#include "desktops/virtual/Session.h"

#include <utility>

#include "platform/Desktop.h"
#include "typing/DiagnosticLog.h"
#include "words/IgnoreList.h"

namespace tessarok::virtualdesktop {

Session::Session(std::optional<std::filesystem::path> home,
                 std::optional<std::filesystem::path> resources)
    : temporaryHome_(home ? nullptr : std::make_unique<TemporaryDirectory>()),
      desktop_(home ? *home : temporaryHome_->path(), std::move(resources)),
      delegate_(std::make_shared<AppDelegate>()) {
  platform::setDesktop(desktop_);
}

Session::~Session() {
  if (launched_) quit();
  IgnoreList::flush();
  DiagnosticLog::drain();
}

void Session::launch() {
  launched_ = true;
  delegate_->applicationDidFinishLaunching();
  desktop_.endTurn();
  endIfAsked();
}

void Session::endIfAsked() {
  if (desktop_.application().terminationRequested) quit();
}

void Session::quit() {
  if (std::exchange(ended_, true)) return;
  delegate_->applicationWillTerminate();
  desktop_.endTurn();
}

}  // namespace tessarok::virtualdesktop

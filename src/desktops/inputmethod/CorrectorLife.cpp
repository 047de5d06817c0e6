#include "desktops/inputmethod/CorrectorLife.h"

#include <exception>
#include <utility>

namespace tessarok::inputmethod {

namespace {

/// Seconds between two attempts to start while another copy runs, and how often the shorter wait
/// is taken first: a framework that takes the place of another one only has to wait for its end.
constexpr double kShortWait = 0.2;
constexpr double kWait = 2;
constexpr int kShortWaits = 25;

}  // namespace

CorrectorLife::CorrectorLife(const Parts& parts, Framework framework)
    : parts_(parts),
      framework_(std::move(framework)),
      diskQueue_(parts.desktop.serialQueues().create("app.tessarok.program")) {
  parts_.application.onTerminate = [this] { hasStopped_ = true; };
}

void CorrectorLife::launch() {
  if (!framework_.isReady()) return tryAgainLater();
  hasStopped_ = false;
  auto corrector =
      std::make_unique<Corrector>(AppDelegate::Instances::onlyOne, AppDelegate::Keys::wait);
  corrector->launch();
  if (hasStopped_) return tryAgainLater();
  corrector_ = std::move(corrector);
  auto& desktop = parts_.desktop;
  contact_.emplace(freedesktop::SessionContact::Surroundings{.session = parts_.session,
                                                             .loop = desktop.runLoop(),
                                                             .queue = *diskQueue_,
                                                             .log = desktop.systemLog(),
                                                             .settings = desktop.userDefaults(),
                                                             .delegate = corrector_->delegate()},
                   freedesktop::RemoteControl::Desktop{.name = framework_.name,
                                                       .obstacles = framework_.obstacles},
                   framework_.program);
  parts_.application.onTerminate = [this] {
    // Not while the menu item that asks for it is running.
    parts_.desktop.runLoop().async([this] {
      framework_.onEnding();
      parts_.flow.finish();
      stop();
    });
  };
  framework_.onStarted();
}

void CorrectorLife::tryAgainLater() {
  const auto wait = ++tries_ > kShortWaits ? kWait : kShortWait;
  parts_.desktop.runLoop().after(wait, [this] { launch(); });
}

void CorrectorLife::stop() {
  try {
    contact_.reset();
    corrector_.reset();
  } catch (const std::exception& error) {
    framework_.onFailure(error.what());
  }
}

}  // namespace tessarok::inputmethod

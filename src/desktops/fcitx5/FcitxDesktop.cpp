#include "desktops/fcitx5/FcitxDesktop.h"

#include <utility>

#include "desktops/fcitx5/FcitxKeys.h"
#include "desktops/xkb/KeySetting.h"

namespace tessarok::fcitx5 {

namespace {

using platform::Notification;
using xkb::ManualKey;
using xkb::PauseKey;

}  // namespace

FcitxDesktop::FcitxDesktop(fcitx::Instance& instance, inputmethod::Guard& guard,
                           std::optional<std::filesystem::path> resources)
    : runLoop_(instance.eventLoop(), guard),
      bundle_(std::move(resources)),
      userDefaults_(posix::SettingsFile::locationFor(files_->homeDirectory()), *files_, systemLog_),
      clients_(instance),
      inputMethods_(instance),
      outlet_(instance),
      keyFlow_({.taps = eventTaps_,
                .inputSources = inputSources_,
                .keyboard = keyboard_,
                .runLoop = runLoop_,
                .clock = clock_,
                .runQueue = [this] { runLoop_.runQueue(); },
                .flush = [this] { outlet_.flush(); },
                .log = systemLog_},
               {}),
      secureInput_(keyFlow_),
      statusBar_(instance, guard),
      sessionBus_(freedesktop::Bus::openSession(runLoop_)),
      systemBus_(freedesktop::Bus::openSystem(runLoop_)),
      sessionWatch_(systemBus_.get(), sessionBus_.get(),
                    {environment_, workspaceNotifications_, systemLog_}),
      notice_(sessionBus_.get(), systemLog_),
      programs_(runLoop_),
      workspace_(programs_, environment_, notice_) {
  keyFlow_.onOtherPlace = [this] {
    workspaceNotifications_.announce(Notification::applicationActivated);
  };
  readKeySettings();
}

FcitxDesktop::~FcitxDesktop() = default;

void FcitxDesktop::readKeySettings() {
  keyFlow_.setManualKey(xkb::keySetting<ManualKey>(userDefaults_, systemLog_));
  keyFlow_.setPauseKey(xkb::keySetting<PauseKey>(userDefaults_, systemLog_));
}

void FcitxDesktop::keyEvent(fcitx::KeyEvent& event) {
  const auto client = clients_.of(*event.inputContext());
  if (client->answerReplayed(event)) return;
  fcitxKeys::answer(event, keyFlow_.keyEvent(client, fcitxKeys::eventOf(event)));
}

void FcitxDesktop::focusOut(fcitx::InputContext& context) {
  keyFlow_.focusOut(*clients_.of(context));
}

void FcitxDesktop::reset(fcitx::InputContext& context) {
  keyFlow_.reset(*clients_.of(context));
}

void FcitxDesktop::textReported(fcitx::InputContext& context) {
  keyFlow_.textReported(*clients_.of(context));
}

void FcitxDesktop::destroyed(fcitx::InputContext& context) {
  keyFlow_.destroyed(*clients_.of(context));
  clients_.forget(context);
}

void FcitxDesktop::focusIn(fcitx::InputContext& context) {
  keyFlow_.focusIn(clients_.of(context));
  statusBar_.showFor(context);
  inputMethodChanged();
}

void FcitxDesktop::inputMethodChanged() {
  if (announced_ == inputSources_.current()) return;
  announced_ = inputSources_.current();
  announceLater(Notification::selectedInputSourceChanged);
}

void FcitxDesktop::groupChanged() {
  announceLater(Notification::enabledInputSourcesChanged);
  announceLater(Notification::selectedInputSourceChanged);
}

void FcitxDesktop::announceLater(Notification notification) {
  runLoop_.async([this, notification] { inputSourceNotifications_.announce(notification); });
}

}  // namespace tessarok::fcitx5

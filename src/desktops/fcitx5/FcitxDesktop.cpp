#include "desktops/fcitx5/FcitxDesktop.h"

#include <utility>

#include "desktops/xkb/KeySetting.h"

namespace tessarok::fcitx5 {

namespace {

using platform::Notification;
using xkb::ManualKey;
using xkb::PauseKey;

}  // namespace

FcitxDesktop::FcitxDesktop(fcitx::Instance& instance, Guard& guard,
                           std::optional<std::filesystem::path> resources)
    : runLoop_(instance.eventLoop(), guard),
      bundle_(std::move(resources)),
      userDefaults_(posix::SettingsFile::locationFor(files_->homeDirectory()), *files_, systemLog_),
      inputSources_(instance),
      outlet_(instance),
      keyFlow_({instance, eventTaps_, inputSources_, keyboard_, runLoop_, clock_,
                [this] { outlet_.flush(); }, systemLog_},
               {}),
      secureInput_(keyFlow_),
      statusBar_(instance, guard),
      sessionBus_(freedesktop::Bus::openSession(runLoop_)),
      systemBus_(freedesktop::Bus::openSystem(runLoop_)),
      sessionWatch_(systemBus_.get(), sessionBus_.get(),
                    {environment_, workspaceNotifications_, systemLog_}),
      notice_(nullptr, systemLog_),
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

void FcitxDesktop::focusIn(fcitx::InputContext& context) {
  keyFlow_.focusIn(context);
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

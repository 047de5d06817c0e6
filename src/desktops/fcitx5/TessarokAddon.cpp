#include "desktops/fcitx5/TessarokAddon.h"

#include <dlfcn.h>
#include <fcitx/addonfactory.h>
#include <fcitx/addonmanager.h>
#include <fcitx/inputcontext.h>
#include <fcitx/inputmethodmanager.h>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "desktops/freedesktop/Obstacles.h"
#include "desktops/freedesktop/SessionKind.h"
#include "desktops/posix/Translation.h"
#include "platform/Desktop.h"
#include "typing/KeyTap.h"
#include "words/BuiltinPacks.h"

namespace tessarok::fcitx5 {

namespace {

namespace fs = std::filesystem;
using fcitx::EventType;
using fcitx::EventWatcherPhase;

/// The file that this code was loaded from; absent when the system does not tell.
std::optional<fs::path> ownFile() {
  Dl_info info{};
  if (::dladdr(reinterpret_cast<const void*>(&ownFile), &info) == 0) return std::nullopt;
  if (info.dli_fname == nullptr) return std::nullopt;
  return info.dli_fname;
}

/// The installed word data, found from the addon's own file: below a prefix the one lies in
/// lib…/fcitx5 and the other in share/tessarok. Absent for an addon that is not installed.
std::optional<fs::path> installedData() {
  const auto file = ownFile();
  if (!file) return std::nullopt;
  constexpr int kLevels = 4;
  std::error_code error;
  auto folder = file->parent_path();
  for (int level = 0; level < kLevels; ++level) {
    folder = folder.parent_path();
    auto data = folder / "share" / "tessarok";
    if (fs::is_directory(data, error)) return data;
  }
  return std::nullopt;
}

const char* nameOf(ManualKeyChoice choice) {
  switch (choice) {
    case ManualKeyChoice::AltSpace:
      return "alt-space";
    case ManualKeyChoice::Pause:
      return "pause";
    case ManualKeyChoice::Both:
      break;
  }
  return "both";
}

ManualKeyChoice choiceOf(const std::optional<std::string>& name) {
  if (name == nameOf(ManualKeyChoice::AltSpace)) return ManualKeyChoice::AltSpace;
  if (name == nameOf(ManualKeyChoice::Pause)) return ManualKeyChoice::Pause;
  return ManualKeyChoice::Both;
}

const char* nameOf(PauseKeyChoice choice) {
  switch (choice) {
    case PauseKeyChoice::Grave:
      return "grave";
    case PauseKeyChoice::Section:
      return "section";
    case PauseKeyChoice::None:
      return "none";
    case PauseKeyChoice::EnglishOnly:
      break;
  }
  return "english-only";
}

PauseKeyChoice pauseChoiceOf(const std::optional<std::string>& name) {
  for (const auto choice : {PauseKeyChoice::Grave, PauseKeyChoice::Section, PauseKeyChoice::None}) {
    if (name == nameOf(choice)) return choice;
  }
  return PauseKeyChoice::EnglishOnly;
}

}  // namespace

TessarokAddon::TessarokAddon(fcitx::Instance& instance) : instance_(instance) {
  guard_.onFailure = [this](const std::string& reason) { fail(reason); };
  guard_([this] {
    desktop_ = std::make_unique<FcitxDesktop>(instance_, guard_, installedData());
    platform::setDesktop(*desktop_);
    life_ = std::make_unique<inputmethod::CorrectorLife>(
        inputmethod::CorrectorLife::Parts{.desktop = *desktop_,
                                          .application = desktop_->application(),
                                          .flow = desktop_->keyFlow(),
                                          .session = desktop_->sessionBus()},
        framework());
    // Addons are made before the groups of input methods are read.
    desktop_->runLoop().async([this] { life_->launch(); });
  });
}

TessarokAddon::~TessarokAddon() {
  watchers_.clear();
  if (desktop_) guard_([this] { desktop_->keyFlow().finish(); });
  guard_.onFailure = nullptr;
  life_.reset();
}

inputmethod::CorrectorLife::Framework TessarokAddon::framework() {
  return {.name = "fcitx5",
          .obstacles = [this] { return obstacles(); },
          .program = ownFile(),
          .isReady = [this] { return instance_.inputMethodManager().groupCount() > 0; },
          .onStarted =
              [this] {
                watch();
                if (auto* context = instance_.lastFocusedInputContext())
                  desktop_->focusIn(*context);
              },
          .onEnding = [this] { watchers_.clear(); },
          .onFailure = [this](const std::string& reason) { fail(reason); }};
}

std::vector<std::string> TessarokAddon::obstacles() const {
  auto all = freedesktop::obstaclesToCorrection();
  auto& environment = desktop_->environment();
  if (freedesktop::isPlasmaSession(environment) && freedesktop::isWaylandSession(environment) &&
      environment.variable("GTK_IM_MODULE") == "fcitx") {
    all.emplace_back(posix::translatable(
        "GTK_IM_MODULE is fcitx, with which programs of GTK 4 lose Return on KDE: unset it"));
  }
  return all;
}

void TessarokAddon::fail(const std::string& reason) {
  if (!desktop_) return;
  desktop_->systemLog().write(
      "Tessarok: " + posix::translated("switched off until Fcitx starts again: {1}", {reason}));
}

template <typename Event, typename Work>
void TessarokAddon::watch(EventType type, EventWatcherPhase phase, Work work) {
  watchers_.push_back(
      instance_.watchEvent(type, phase, [this, work = std::move(work)](fcitx::Event& event) {
        guard_([&] { work(static_cast<Event&>(event)); });
      }));
}

void TessarokAddon::watch() {
  using fcitx::InputContextEvent;
  auto& desktop = *desktop_;
  watch<fcitx::KeyEvent>(EventType::InputContextKeyEvent, EventWatcherPhase::PreInputMethod,
                         [&desktop](fcitx::KeyEvent& event) { desktop.keyEvent(event); });
  watch<InputContextEvent>(
      EventType::InputContextFocusIn, EventWatcherPhase::PostInputMethod,
      [&desktop](InputContextEvent& event) { desktop.focusIn(*event.inputContext()); });
  watch<InputContextEvent>(
      EventType::InputContextFocusOut, EventWatcherPhase::PreInputMethod,
      [&desktop](InputContextEvent& event) { desktop.focusOut(*event.inputContext()); });
  watch<InputContextEvent>(
      EventType::InputContextReset, EventWatcherPhase::PreInputMethod,
      [&desktop](InputContextEvent& event) { desktop.reset(*event.inputContext()); });
  watch<InputContextEvent>(
      EventType::InputContextSurroundingTextUpdated, EventWatcherPhase::PostInputMethod,
      [&desktop](InputContextEvent& event) { desktop.textReported(*event.inputContext()); });
  watch<InputContextEvent>(
      EventType::InputContextDestroyed, EventWatcherPhase::PreInputMethod,
      [&desktop](InputContextEvent& event) { desktop.destroyed(*event.inputContext()); });
  watch<InputContextEvent>(EventType::InputContextSwitchInputMethod,
                           EventWatcherPhase::PostInputMethod,
                           [&desktop](InputContextEvent&) { desktop.inputMethodChanged(); });
  watch<fcitx::Event>(EventType::InputMethodGroupChanged, EventWatcherPhase::PostInputMethod,
                      [&desktop](fcitx::Event&) { desktop.groupChanged(); });
}

void TessarokAddon::readSettings() const {
  auto& settings = desktop_->userDefaults();
  config_.shiftFix.setValue(settings.boolean(KeyTap::kShiftFixKey).value_or(true));
  config_.manualKey.setValue(choiceOf(settings.string(xkb::ManualKey::kSetting)));
  config_.pauseKey.setValue(pauseChoiceOf(settings.string(xkb::PauseKey::kSetting)));
  const auto& packs = BuiltinPacks::all();
  config_.packIt.setValue(BuiltinPacks::isEnabled(packs[0]));
  config_.packChat.setValue(BuiltinPacks::isEnabled(packs[1]));
  config_.packGaming.setValue(BuiltinPacks::isEnabled(packs[2]));
}

const fcitx::Configuration* TessarokAddon::getConfig() const {
  if (desktop_) readSettings();
  return &config_;
}

void TessarokAddon::setConfig(const fcitx::RawConfig& raw) {
  guard_([&] {
    if (!desktop_) return;
    readSettings();
    const AddonConfig before = config_;
    config_.load(raw, true);
    auto& settings = desktop_->userDefaults();
    const auto save = [&](const auto& now, const auto& then, const std::string& key) {
      if (*now != *then) settings.setBoolean(key, *now);
    };
    const auto& packs = BuiltinPacks::all();
    save(config_.shiftFix, before.shiftFix, KeyTap::kShiftFixKey);
    save(config_.packIt, before.packIt, BuiltinPacks::defaultsKey(packs[0]));
    save(config_.packChat, before.packChat, BuiltinPacks::defaultsKey(packs[1]));
    save(config_.packGaming, before.packGaming, BuiltinPacks::defaultsKey(packs[2]));
    if (*config_.manualKey != *before.manualKey) {
      settings.setString(xkb::ManualKey::kSetting, nameOf(*config_.manualKey));
    }
    if (*config_.pauseKey != *before.pauseKey) {
      settings.setString(xkb::PauseKey::kSetting, nameOf(*config_.pauseKey));
    }
    applySettings();
  });
}

void TessarokAddon::reloadConfig() {
  guard_([this] {
    if (!desktop_) return;
    desktop_->userDefaults().reload();
    applySettings();
  });
}

void TessarokAddon::applySettings() {
  desktop_->readKeySettings();
  if (!life_ || !life_->isRunning()) return;
  auto& keyTap = KeyTap::shared();
  keyTap.shiftFixEnabled = desktop_->userDefaults().boolean(KeyTap::kShiftFixKey).value_or(true);
  BuiltinPacks::rebuild();
  // The menu was drawn by the switches as they were.
  const auto menu = desktop_->statusBar().menu();
  if (!menu) return;
  for (const auto& item : menu->items) {
    if (item->title == config_.shiftFix.description()) item->state = keyTap.shiftFixEnabled;
    if (!item->submenu) continue;
    for (const auto& pack : BuiltinPacks::all()) {
      for (const auto& line : item->submenu->items) {
        if (line->title == pack.title) line->state = BuiltinPacks::isEnabled(pack);
      }
    }
  }
  desktop_->statusBar().update();
}

/// Made by Fcitx when it loads the addon.
class AddonFactory final : public fcitx::AddonFactory {
 public:
  fcitx::AddonInstance* create(fcitx::AddonManager* manager) override {
    // The state of the corrector outlives an addon that was unloaded; a second one would find it
    // used up. Fcitx loads each addon once.
    if (std::exchange(isMade_, true)) return nullptr;
    // The addon's configuration page has texts in it from the start.
    if (const auto data = installedData()) posix::useTranslationsIn(data->parent_path() / "locale");
    return new TessarokAddon(*manager->instance());
  }

 private:
  bool isMade_ = false;
};

}  // namespace tessarok::fcitx5

FCITX_ADDON_FACTORY(tessarok::fcitx5::AddonFactory)

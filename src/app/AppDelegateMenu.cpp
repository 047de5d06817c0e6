// The menu and the icon of `AppDelegate`: the whole user interface.

#include <utility>

#include "app/AppDelegate.h"
#include "platform/Desktop.h"
#include "typing/InputSource.h"
#include "typing/KeyTap.h"
#include "words/BuiltinPacks.h"
#include "words/Dict.h"
#include "words/UserDict.h"

namespace tessarok {

namespace {

using platform::Menu;
using platform::MenuItem;

constexpr const char* kAccessibilitySettings =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";

std::shared_ptr<MenuItem> item(std::string title, std::function<void(MenuItem&)> action = nullptr) {
  auto made = std::make_shared<MenuItem>();
  made->title = std::move(title);
  made->action = std::move(action);
  return made;
}

std::shared_ptr<MenuItem> reminder(std::string title) {
  auto made = item(std::move(title));
  made->enabled = false;
  return made;
}

std::shared_ptr<MenuItem> separator() {
  auto made = std::make_shared<MenuItem>();
  made->isSeparator = true;
  return made;
}

const char* symbolOf(const Status& status) {
  if (!status.works()) return "keyboard.badge.ellipsis";
  if (status.paused) return "pause.circle";
  return status.enabled ? "keyboard" : "keyboard.chevron.compact.down";
}

/// What stands for the symbol where the desktop has none of this name.
const char* glyphOf(const Status& status) {
  if (!status.works()) return "⌨︎⚠︎";
  return status.paused || !status.enabled ? "⌨︎⏸" : "⌨︎";
}

const char* toolTipOf(const Status& status) {
  if (!status.tapRunning) return "Tessarok — needs Accessibility permission";
  if (!status.canProcess) {
    return "Tessarok — enable compatible Russian and QWERTY layouts, then select one of them";
  }
  if (!status.hasWordData) {
    return "Tessarok — missing dictionaries; automatic layout correction unavailable, "
           "⌥Space works";
  }
  if (status.paused) return "Tessarok — пауза на 5 сек, сейчас включится";
  return status.enabled ? "Tessarok — on" : "Tessarok — paused";
}

}  // namespace

std::shared_ptr<Menu> AppDelegate::makeMenu() {
  auto menu = std::make_shared<Menu>();
  auto add = [&](std::shared_ptr<MenuItem> made) -> MenuItem& {
    menu->items.push_back(std::move(made));
    return *menu->items.back();
  };
  enabledItem_ = item("Enabled", [this](MenuItem&) {
    setCorrection(KeyTap::shared().enabled ? Correction::off : Correction::on);
  });
  enabledItem_->state = true;
  menu->items.push_back(enabledItem_);
  add(reminder("⌥Space — convert last word"));
  add(reminder("` / § (EN) — пауза на 5 сек"));
  add(separator());
  add(item("Словари исключений")).submenu = makePackMenu();
  add(item("Shift-фикс (ПРивет → Привет)", [this](MenuItem& sender) {
    toggleShiftFix(sender);
  })).state = KeyTap::shared().shiftFixEnabled;
  add(item("Open User Dictionary…", [this](MenuItem&) { openDictionary(); }));
  add(item("Open Accessibility Settings…", [this](MenuItem&) { openSettings(); }));
  add(separator());
  add(item("Quit Tessarok", [this](MenuItem&) { quit(); })).keyEquivalent = "q";
  return menu;
}

std::shared_ptr<Menu> AppDelegate::makePackMenu() {
  auto menu = std::make_shared<Menu>();
  int tag = 0;
  for (const auto& pack : BuiltinPacks::all()) {
    auto made = item(pack.title, [this](MenuItem& sender) { togglePack(sender); });
    made->tag = tag++;
    made->state = BuiltinPacks::isEnabled(pack);
    menu->items.push_back(std::move(made));
  }
  return menu;
}

void AppDelegate::setCorrection(Correction correction) {
  auto& keyTap = KeyTap::shared();
  const bool isOn = correction == Correction::on;
  // What is so already costs nobody the word that is being typed.
  if (keyTap.enabled == isOn) return;
  keyTap.enabled = isOn;
  keyTap.invalidateInputSourceContext(WordState::ArmedRejection::drop);
  if (enabledItem_) enabledItem_->state = keyTap.enabled;
  updateIcon();
}

void AppDelegate::toggleShiftFix(MenuItem& sender) {
  auto& keyTap = KeyTap::shared();
  keyTap.shiftFixEnabled = !keyTap.shiftFixEnabled;
  platform::desktop().userDefaults().setBoolean(KeyTap::kShiftFixKey, keyTap.shiftFixEnabled);
  sender.state = keyTap.shiftFixEnabled;
}

void AppDelegate::togglePack(MenuItem& sender) {
  const auto& packs = BuiltinPacks::all();
  if (sender.tag < 0 || static_cast<std::size_t>(sender.tag) >= packs.size()) return;
  const auto& pack = packs[static_cast<std::size_t>(sender.tag)];
  const bool enabled = !BuiltinPacks::isEnabled(pack);
  platform::desktop().userDefaults().setBoolean(BuiltinPacks::defaultsKey(pack), enabled);
  BuiltinPacks::rebuild();
  sender.state = enabled;
}

void AppDelegate::openDictionary() {
  UserDict::seedIfMissing();
  UserDict::reload([] { platform::desktop().workspace().openFile(UserDict::fileURL()); });
}

void AppDelegate::openSettings() {
  platform::desktop().workspace().openUrl(kAccessibilitySettings);
}

void AppDelegate::quit() {
  platform::desktop().application().terminate();
}

Status AppDelegate::status() const {
  const auto& keyTap = KeyTap::shared();
  return {.tapRunning = tapRunning_,
          .canProcess = InputSource::canProcessCurrentLayout(),
          .enabled = keyTap.enabled,
          .paused = keyTap.isPaused(),
          .hasWordData = Dict::en().isAvailable() && Dict::ru().isAvailable()};
}

void AppDelegate::updateIcon() {
  if (!statusItem_ || !statusItem_->hasButton()) return;
  const auto status = this->status();
  if (!statusItem_->setSymbol(symbolOf(status))) statusItem_->setTitle(glyphOf(status));
  statusItem_->setAppearsDisabled(!status.works() || !status.enabled || status.paused);
  statusItem_->setToolTip(toolTipOf(status));
}

}  // namespace tessarok

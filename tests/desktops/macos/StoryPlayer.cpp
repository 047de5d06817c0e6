#include "tests/desktops/macos/StoryPlayer.h"

#include <cstdlib>
#include <filesystem>
#include <limits>
#include <map>
#include <stdexcept>

#include "desktops/virtual/ReplayValues.h"
#include "desktops/virtual/WorkspaceNotifications.h"
#include "text/Text.h"
#include "typing/KeyTap.h"
#include "words/IgnoreList.h"
#include "words/UserDict.h"

namespace tessarok::macostest {

namespace {

using fakemac::fakeSystem;
namespace values = virtualdesktop::replayValues;

[[noreturn]] void refuse(const std::string& what) {
  throw std::runtime_error("the Mac does not know " + what);
}

Key keyOf(const nlohmann::json& value) {
  Key key{.code = values::integer(value.at("code"), "code")};
  if (value.contains("mods")) key.flags = values::modifiers(value["mods"]);
  key.autorepeat = value.value("repeat", false);
  if (value.contains("chars")) key.text = text::utf16(values::text(value["chars"], "chars"));
  if (value.value("marker", false)) key.userData = KeyTap::kMarker;
  return key;
}

}  // namespace

std::optional<nlohmann::json> StoryPlayer::play(const std::string& line) {
  const auto parsed = Json::parse(line);
  const auto& action = parsed.begin().key();
  const auto& value = parsed.begin().value();
  if (action == "setup") {
    setUp(value);
    launchOnce();
    return std::nullopt;
  }
  launchOnce();
  if (action == "print") {
    auto printed = Json::object();
    for (const auto& field : values::texts(value, "print"))
      printed[field] = printer_.value(field);
    return printed;
  }
  perform(action, value);
  mac_.endTurn();
  return std::nullopt;
}

void StoryPlayer::finish() {
  launchOnce();
  mac_.quit();
}

void StoryPlayer::launchOnce() {
  fakeSystem().tapsSeePasswords = true;
  if (!std::exchange(launched_, true)) mac_.launch();
}

void StoryPlayer::perform(const std::string& action, const Json& value) {
  static const std::map<std::string, CGEventType, std::less<>> buttons = {
      {"left", kCGEventLeftMouseDown},
      {"right", kCGEventRightMouseDown},
      {"other", kCGEventOtherMouseDown}};
  using Action = std::function<void()>;
  const std::map<std::string, Action, std::less<>> actions = {
      {"keys", [&] { keys(value); }},
      {"down", [&] { mac_.keyDown(keyOf(value)); }},
      {"up", [&] { mac_.keyUp(keyOf(value)); }},
      {"click", [&] { mac_.click(buttons.at(value.get<std::string>())); }},
      {"select", [&] { mac_.select(value.get<std::string>()); }},
      {"enable",
       [&] {
         mac_.enable(values::texts(value, "enable"));
         mac_.announceEnabled();
       }},
      {"keyboard", [&] { setKeyboard(value); }},
      {"secure", [&] { fakeSystem().secureInput = value.get<bool>(); }},
      {"trusted", [&] { mac_.setTrusted(value.get<bool>()); }},
      {"tap", [&] { tap(value.get<std::string>()); }},
      {"fail", [&] { fail(value.get<std::string>()); }},
      {"workspace",
       [&] {
         const auto notification =
             virtualdesktop::workspaceNotificationNamed(value.get<std::string>());
         if (notification) mac_.announceToWorkspace(*notification);
       }},
      {"menu",
       [&] {
         if (!mac_.choose(value.get<std::string>())) refuse("the menu item " + value.dump());
       }},
      {"file",
       [&] {
         IgnoreList::flush();
         writeFiles(value);
       }},
      {"wait", [&] { mac_.wait(value.get<double>()); }},
      {"quit", [&] { mac_.quit(); }},
  };
  const auto found = actions.find(action);
  if (found == actions.end()) refuse("the action " + action);
  found->second();
}

void StoryPlayer::setUp(const Json& value) {
  if (value.contains("sources")) {
    const auto identifiers = values::texts(value["sources"], "sources");
    mac_.enable(identifiers);
    mac_.setCurrent(identifiers.front());
  }
  if (value.contains("current")) mac_.setCurrent(value["current"].get<std::string>());
  setKeyboard(value);
  if (value.contains("trusted")) mac_.setTrusted(value["trusted"].get<bool>());
  if (!value.value("debug", true)) ::unsetenv("TESSAROK_DEBUG");
  const auto defaults = value.value("defaults", Json::object());
  for (const auto& [key, setting] : defaults.items()) {
    fakeSystem().setPreference(key,
                               CFRetain(setting.get<bool>() ? kCFBooleanTrue : kCFBooleanFalse));
  }
  writeFiles(value.value("files", Json::object()));
}

void StoryPlayer::setKeyboard(const Json& value) {
  const char* typeField = value.contains("keyboardType") ? "keyboardType" : "type";
  if (value.contains(typeField)) {
    const auto type = values::keyboardType(value[typeField]);
    if (type > std::numeric_limits<std::uint8_t>::max()) refuse("keyboard types beyond a byte");
    fakeSystem().keyboardType = static_cast<std::uint8_t>(type);
  }
  if (!value.contains("layoutType")) return;
  static const std::map<std::string, PhysicalKeyboardLayoutType, std::less<>> types = {
      {"ANSI", kKeyboardANSI}, {"ISO", kKeyboardISO}, {"JIS", kKeyboardJIS}};
  fakeSystem().physicalLayout = types.at(value["layoutType"].get<std::string>());
}

void StoryPlayer::keys(const Json& value) {
  for (const auto character : text::Characters(values::text(value, "keys"))) {
    const auto stroke = strokeFor(character);
    if (!stroke) refuse("a key for " + std::string(character));
    mac_.stroke(*stroke);
  }
}

void StoryPlayer::tap(const std::string& what) {
  auto* tap = fakeSystem().tap;
  if (what == "timeout") return mac_.disableTap(kCGEventTapDisabledByTimeout);
  if (what == "user") return mac_.disableTap(kCGEventTapDisabledByUserInput);
  if (what != "off" && what != "deaf") refuse("the tap value " + what);
  if (tap == nullptr) return;
  if (what == "off") tap->isEnabled = false;
  if (what == "deaf") tap->isDeaf = true;
}

void StoryPlayer::fail(const std::string& what) {
  auto& system = fakeSystem();
  if (what == "source") {
    system.failsNextSource = true;
  } else if (what == "event") {
    system.failsNextEvent = true;
  } else if (what == "select") {
    system.failsNextSelection = true;
  } else if (what == "write") {
    IgnoreList::flush();
    mac_.files().failNextWrite();
  } else {
    refuse("the failure " + what);
  }
}

void StoryPlayer::writeFiles(const Json& files) {
  for (const auto& [name, content] : files.items()) {
    const auto file = UserDict::directory() / values::fileName(name);
    if (content.is_null()) {
      std::filesystem::remove(file);
      continue;
    }
    std::filesystem::create_directories(file.parent_path());
    if (const auto failure = mac_.files().saveAsEditor(file, content.get<std::string>())) {
      throw std::runtime_error("cannot write " + file.string() + ": " + failure.reason());
    }
  }
}

}  // namespace tessarok::macostest

#include "tests/desktops/fcitx5/StoryScript.h"

#include <fcitx-utils/key.h>
#include <functional>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>

#include "desktops/layouts/KeyTable.h"
#include "desktops/xkb/HardwareKeys.h"
#include "tests/support/ChildProcess.h"
#include "text/Text.h"
#include "typing/KeyCodes.h"

namespace tessarok::testing {

namespace {

using nlohmann::json;
namespace hardwareKeys = xkb::hardwareKeys;

/// Seconds that pass between a person's keys and a click.
constexpr double kBeforeClick = 0.4;
/// Seconds in which what the login manager says arrives.
constexpr double kSignal = 0.3;

[[noreturn]] void refuse(const std::string& what) {
  throw std::runtime_error("a text field of Fcitx does not know " + what);
}

const std::string& inputMethodOf(const std::string& identifier) {
  static const std::map<std::string, std::string> names = {
      {"com.apple.keylayout.US", "keyboard-us"},
      {"com.apple.keylayout.ABC", "keyboard-us-altgr-intl"},
      {"com.apple.keylayout.British", "keyboard-gb"},
      {"com.apple.keylayout.RussianWin", "keyboard-ru"},
      {"com.apple.keylayout.Russian", "keyboard-ru-mac"}};
  const auto found = names.find(identifier);
  if (found == names.end()) refuse("the layout " + identifier);
  return found->second;
}

fcitx::KeySym symbolOf(std::int64_t code, bool shift) {
  static const std::map<std::int64_t, fcitx::KeySym> fixed = {
      {keyCodes::space, FcitxKey_space},
      {keyCodes::returnKey, FcitxKey_Return},
      {keyCodes::enter, FcitxKey_KP_Enter},
      {keyCodes::tab, FcitxKey_Tab},
      {keyCodes::backspace, FcitxKey_BackSpace},
      {keyCodes::escape, FcitxKey_Escape},
      {keyCodes::forwardDelete, FcitxKey_Delete},
      {keyCodes::home, FcitxKey_Home},
      {keyCodes::end, FcitxKey_End},
      {keyCodes::pageUp, FcitxKey_Page_Up},
      {keyCodes::pageDown, FcitxKey_Page_Down},
      {keyCodes::left, FcitxKey_Left},
      {keyCodes::right, FcitxKey_Right},
      {keyCodes::up, FcitxKey_Up},
      {keyCodes::down, FcitxKey_Down}};
  if (const auto found = fixed.find(code); found != fixed.end()) return found->second;
  const auto character = layouts::KeyTable::english().character(code, shift);
  if (!character || code == keyCodes::isoSection) refuse("the key " + std::to_string(code));
  return fcitx::Key::keySymFromUnicode(*character);
}

fcitx::KeyStates statesOf(const json& modifiers) {
  static const std::map<std::string, fcitx::KeyState> states = {
      {"shift", fcitx::KeyState::Shift},
      {"control", fcitx::KeyState::Ctrl},
      {"option", fcitx::KeyState::Alt},
      {"command", fcitx::KeyState::Super},
      {"capslock", fcitx::KeyState::CapsLock}};
  fcitx::KeyStates all;
  for (const auto& name : modifiers) {
    // No keyboard of this system has it.
    if (name == "fn") continue;
    all |= states.at(name.get<std::string>());
  }
  return all;
}

json stroke(std::int64_t code, fcitx::KeyStates states, bool isUp) {
  const auto symbol = symbolOf(code, states.test(fcitx::KeyState::Shift));
  return {{"symbol", static_cast<unsigned>(symbol)},
          {"states", static_cast<unsigned>(states)},
          {"key", hardwareKeys::xKeyOf(code)},
          {"up", isUp}};
}

/// The modifier keys of a key with modifiers, pressed before it or released behind it.
void addModifiers(json& strokes, fcitx::KeyStates states, bool isUp) {
  struct Modifier {
    fcitx::KeyState state;
    fcitx::KeySym symbol;
    int key;
  };
  constexpr Modifier kModifiers[] = {{fcitx::KeyState::Shift, FcitxKey_Shift_L, 50},
                                     {fcitx::KeyState::Ctrl, FcitxKey_Control_L, 37},
                                     {fcitx::KeyState::Alt, FcitxKey_Alt_L, 64},
                                     {fcitx::KeyState::Super, FcitxKey_Super_L, 133}};
  fcitx::KeyStates held = isUp ? states : fcitx::KeyStates();
  for (const auto& modifier : kModifiers) {
    if (!states.test(modifier.state)) continue;
    strokes.push_back({{"symbol", static_cast<unsigned>(modifier.symbol)},
                       {"states", static_cast<unsigned>(held)},
                       {"key", modifier.key},
                       {"up", isUp}});
    held = isUp ? held.unset(modifier.state) : held | modifier.state;
  }
}

layouts::KeyTable::Stroke keyFor(std::string_view character) {
  if (character == " ") return {keyCodes::space, false};
  if (character == "\n") return {keyCodes::returnKey, false};
  if (character == "\t") return {keyCodes::tab, false};
  if (character == "\b") return {keyCodes::backspace, false};
  const auto scalar = text::singleScalar(character);
  const auto found = scalar ? layouts::KeyTable::english().strokeFor(*scalar) : std::nullopt;
  if (!found) refuse("a key for " + std::string(character));
  return *found;
}

/// What the login manager says that the corrector hears as this; null for none.
const char* loginSignalFor(const std::string& notification) {
  static const std::map<std::string, const char*> signals = {
      {"NSWorkspaceWillSleepNotification", "sleep"},
      {"NSWorkspaceDidWakeNotification", "wake"},
      {"NSWorkspaceSessionDidResignActiveNotification", "Lock"},
      {"NSWorkspaceSessionDidBecomeActiveNotification", "Unlock"}};
  const auto found = signals.find(notification);
  return found == signals.end() ? nullptr : found->second;
}

json stepFor(const std::string& action, const json& value) {
  if (action == "keys") return {{"strokes", StoryScript::strokesFor(value.get<std::string>())}};
  if (action == "down" || action == "up") {
    auto states = statesOf(value.value("mods", json::array()));
    if (value.value("repeat", false)) states |= fcitx::KeyState::Repeat;
    const auto code = value.at("code").get<std::int64_t>();
    auto strokes = json::array();
    addModifiers(strokes, states, false);
    strokes.push_back(stroke(code, states, action == "up"));
    addModifiers(strokes, states, true);
    return {{"strokes", strokes}};
  }
  if (action == "click") return {{"click", true}};
  if (action == "select") return {{"select", inputMethodOf(value.get<std::string>())}};
  if (action == "secure") return {{"password", value}};
  if (action == "menu") return {{"choose", value}};
  if (action == "workspace" && value == "NSWorkspaceDidActivateApplicationNotification") {
    return {{"refocus", true}};
  }
  if (action == "workspace") {
    if (const auto* signal = loginSignalFor(value)) return {{"login", signal}, {"wait", kSignal}};
  }
  if (action == "enable") {
    auto names = json::array();
    for (const auto& identifier : value)
      names.push_back(inputMethodOf(identifier.get<std::string>()));
    return {{"enable", names}};
  }
  if (action == "wait") return {{"wait", value}};
  refuse("the action " + action);
}

/// What the virtual desktop shows behind each line of a replay.
std::vector<json> onTheVirtualDesktop(const std::string& script) {
  const auto run = runProgram({"replay", "--resources", TESSAROK_TEST_DATA}, script);
  if (run.status != 0) throw std::runtime_error(run.err);
  std::vector<json> printed;
  std::istringstream lines(run.out);
  for (std::string line; std::getline(lines, line);)
    printed.push_back(json::parse(line));
  return printed;
}

}  // namespace

json StoryScript::strokesFor(const std::string& keys) {
  auto strokes = json::array();
  for (const auto character : text::Characters(keys)) {
    const auto key = keyFor(character);
    const fcitx::KeyStates states(key.shift ? fcitx::KeyState::Shift : fcitx::KeyState::NoState);
    addModifiers(strokes, states, false);
    strokes.push_back(stroke(key.code, states, false));
    strokes.push_back(stroke(key.code, states, true));
    addModifiers(strokes, states, true);
  }
  return strokes;
}

StoryScript StoryScript::of(const std::string& story) {
  StoryScript script;
  script.inputMethods = {"keyboard-us", "keyboard-ru"};
  std::string replay;
  std::istringstream lines(story);
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line.front() == '#') continue;
    const auto parsed = json::parse(line);
    const auto& action = parsed.begin().key();
    const auto& value = parsed.begin().value();
    if (action == "print") continue;
    replay += line + "\n" + R"({"print":["text","caret","source"]})" + "\n";
    if (action != "setup") {
      if (action == "click") script.steps.back()["wait"] = kBeforeClick;
      script.steps.push_back(stepFor(action, value));
      continue;
    }
    if (value.contains("sources")) {
      script.inputMethods.clear();
      for (const auto& identifier : value["sources"])
        script.inputMethods.push_back(inputMethodOf(identifier.get<std::string>()));
    }
    script.files = value.value("files", json::object());
    script.settings = value.value("defaults", json::object());
    json first = json::object();
    if (value.contains("current")) first = {{"select", inputMethodOf(value["current"])}};
    script.steps.push_back(first);
  }
  const auto shown = onTheVirtualDesktop(replay);
  for (std::size_t i = 0; i < shown.size(); ++i) {
    script.steps[i]["text"] = shown[i]["text"];
    script.steps[i]["caret"] = shown[i]["caret"];
    script.steps[i]["source"] = inputMethodOf(shown[i]["source"]);
  }
  return script;
}

}  // namespace tessarok::testing

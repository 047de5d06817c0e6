#include "desktops/virtual/Replay.h"

#include <set>
#include <system_error>
#include <utility>
#include <vector>

#include "desktops/virtual/ReplayError.h"
#include "desktops/virtual/ReplayValues.h"
#include "desktops/virtual/WorkspaceNotifications.h"
#include "text/Text.h"
#include "typing/KeyTap.h"
#include "words/IgnoreList.h"
#include "words/UserDict.h"

namespace tessarok::virtualdesktop {

namespace {

using platform::EventType;
namespace values = replayValues;

template <typename Value>
Value choice(const std::map<std::string, Value, std::less<>>& choices, const std::string& name) {
  const auto found = choices.find(name);
  if (found == choices.end()) throw ReplayError("unknown value \"" + name + "\"");
  return found->second;
}

/// The key that types a Character on the US layout.
KeyTable::Stroke strokeFor(std::string_view character) {
  if (character == " ") return {keyCodes::space, false};
  if (character == "\n") return {keyCodes::returnKey, false};
  if (character == "\t") return {keyCodes::tab, false};
  if (character == "\b") return {keyCodes::backspace, false};
  const auto scalar = text::singleScalar(character);
  const auto stroke =
      scalar ? KeyTable::english().strokeFor(*scalar) : std::optional<KeyTable::Stroke>();
  if (!stroke) throw ReplayError("no key types \"" + std::string(character) + "\"");
  return *stroke;
}

/// One line. That a key is there twice is never meant, and which of the two counts nobody can tell.
nlohmann::json parsed(const std::string& line) {
  using Json = nlohmann::json;
  std::vector<std::set<std::string>> open;
  const auto notice = [&open](int, Json::parse_event_t event, Json& value) {
    if (event == Json::parse_event_t::object_start) open.emplace_back();
    if (event == Json::parse_event_t::object_end) open.pop_back();
    if (event != Json::parse_event_t::key) return true;
    const auto& key = value.get_ref<const std::string&>();
    if (!open.back().insert(key).second)
      throw ReplayError("the key \"" + key + "\" is there twice");
    return true;
  };
  return Json::parse(line, notice, false);
}

void requireTrue(const nlohmann::json& value, std::string_view what) {
  if (!values::boolean(value, what)) throw ReplayError(std::string(what) + " must be true");
}

}  // namespace

Replay::Replay(std::optional<std::filesystem::path> home,
               std::optional<std::filesystem::path> resources)
    : session_(std::move(home), std::move(resources)), printer_(session_) {
  session_.desktop().recordsEvents = true;
  session_.desktop().environment().logs = true;
}

void Replay::run(std::istream& in, std::ostream& out) {
  out_ = &out;
  std::string line;
  for (std::size_t number = 1; std::getline(in, line); ++number) {
    if (line.ends_with('\r')) line.pop_back();
    if (line.empty() || line.front() == '#') continue;
    try {
      runLine(line);
    } catch (const ReplayError& error) {
      throw ReplayError("line " + std::to_string(number) + ": " + error.what());
    }
  }
  launchOnce();
}

void Replay::runLine(const std::string& line) {
  const auto value = parsed(line);
  if (value.is_discarded()) throw ReplayError("not a JSON value");
  if (!value.is_object()) throw ReplayError("not a JSON object");
  if (value.size() != 1) throw ReplayError("a line holds exactly one action");
  perform(value.begin().key(), value.begin().value());
}

void Replay::perform(const std::string& name, const Json& value) {
  static const std::map<std::string, Action, std::less<>> actions = {
      {"keys", &Replay::keys},
      {"down", &Replay::down},
      {"up", &Replay::up},
      {"click", &Replay::click},
      {"select", &Replay::select},
      {"enable", &Replay::enable},
      {"keyboard", &Replay::keyboard},
      {"secure", &Replay::secure},
      {"trusted", &Replay::trusted},
      {"tap", &Replay::tap},
      {"fail", &Replay::fail},
      {"workspace", &Replay::workspace},
      {"menu", &Replay::menu},
      {"file", &Replay::file},
      {"wait", &Replay::wait},
      {"quit", &Replay::quit},
      {"print", &Replay::print},
  };
  if (name == "setup") {
    if (launched_) throw ReplayError("\"setup\" may only be the first line");
    setup(value);
    launchOnce();
    return;
  }
  const auto action = actions.find(name);
  if (action == actions.end()) throw ReplayError("unknown action \"" + name + "\"");
  launchOnce();
  if (session_.hasEnded() && name != "print") {
    throw ReplayError("the application has quit; only \"print\" may follow");
  }
  (this->*action->second)(value);
  session_.desktop().endTurn();
  session_.endIfAsked();
}

void Replay::launchOnce() {
  if (!std::exchange(launched_, true)) session_.launch();
}

void Replay::setup(const Json& value) {
  values::requireObject(value, "\"setup\"",
                        {"sources", "current", "keyboardType", "layoutType", "trusted", "defaults",
                         "files", "debug"});
  auto& desktop = session_.desktop();
  setupSources(value);
  setKeyboard(value);
  if (value.contains("trusted")) {
    desktop.setTrusted(values::boolean(value["trusted"], "\"trusted\""));
  }
  if (value.contains("debug")) {
    desktop.environment().logs = values::boolean(value["debug"], "\"debug\"");
  }
  if (value.contains("defaults")) {
    if (!value["defaults"].is_object()) throw ReplayError("\"defaults\" must be an object");
    for (const auto& [key, setting] : value["defaults"].items()) {
      desktop.userDefaults().setBoolean(key, values::boolean(setting, "\"" + key + "\""));
    }
  }
  if (value.contains("files")) {
    if (!value["files"].is_object()) throw ReplayError("\"files\" must be an object");
    for (const auto& [name, text] : value["files"].items()) {
      writeFile(values::fileName(name), values::text(text, "the text of \"" + name + "\""));
    }
  }
}

void Replay::setupSources(const Json& value) {
  auto& sources = session_.desktop().inputSources();
  if (value.contains("sources")) {
    auto identifiers = values::texts(value["sources"], "\"sources\"");
    if (identifiers.empty()) throw ReplayError("\"sources\" must not be empty");
    sources.setCurrent(identifiers.front());
    sources.enable(std::move(identifiers));
  }
  if (!value.contains("current")) return;
  const auto& current = values::text(value["current"], "\"current\"");
  if (!sources.isEnabled(current)) throw ReplayError("\"" + current + "\" is not enabled");
  sources.setCurrent(current);
}

void Replay::setKeyboard(const Json& value) {
  const char* typeField = value.contains("keyboardType") ? "keyboardType" : "type";
  auto& keyboard = session_.desktop().keyboard();
  if (value.contains(typeField)) keyboard.keyboardType = values::keyboardType(value[typeField]);
  if (value.contains("layoutType")) {
    keyboard.physicalLayout = values::layoutType(value["layoutType"]);
  }
}

void Replay::writeFile(const std::string& name, const std::string& text) {
  auto& files = session_.desktop().files();
  const auto file = UserDict::directory() / name;
  auto failure = files.createDirectories(file.parent_path());
  if (!failure) failure = files.saveAsEditor(file, text);
  if (failure) throw ReplayError("cannot write " + file.string() + ": " + failure.reason());
}

void Replay::keys(const Json& value) {
  std::vector<KeyTable::Stroke> strokes;
  for (const auto character : text::Characters(values::text(value, "\"keys\""))) {
    strokes.push_back(strokeFor(character));
  }
  for (const auto& stroke : strokes)
    session_.desktop().stroke(stroke);
}

void Replay::down(const Json& value) {
  values::requireObject(value, "\"down\"", {"code", "mods", "repeat", "chars", "marker"});
  if (!value.contains("code")) throw ReplayError("\"down\" needs a \"code\"");
  VirtualDesktop::KeyDown key{.code = values::integer(value["code"], "\"code\"")};
  if (value.contains("mods")) key.modifiers = values::modifiers(value["mods"]);
  if (value.contains("repeat")) key.autorepeat = values::boolean(value["repeat"], "\"repeat\"");
  if (value.contains("chars"))
    key.characters = text::utf16(values::text(value["chars"], "\"chars\""));
  const bool marked = value.contains("marker") && values::boolean(value["marker"], "\"marker\"");
  if (marked) key.userData = KeyTap::kMarker;
  session_.desktop().keyDown(key);
}

void Replay::up(const Json& value) {
  values::requireObject(value, "\"up\"", {"code", "mods"});
  if (!value.contains("code")) throw ReplayError("\"up\" needs a \"code\"");
  const auto code = values::integer(value["code"], "\"code\"");
  session_.desktop().keyUp(code, value.contains("mods") ? values::modifiers(value["mods"]) : 0);
}

void Replay::click(const Json& value) {
  static const std::map<std::string, EventType, std::less<>> buttons = {
      {"left", EventType::leftMouseDown},
      {"right", EventType::rightMouseDown},
      {"other", EventType::otherMouseDown}};
  session_.desktop().click(choice(buttons, values::text(value, "\"click\"")));
}

void Replay::select(const Json& value) {
  const auto& identifier = values::text(value, "\"select\"");
  if (!session_.desktop().inputSources().isEnabled(identifier)) {
    throw ReplayError("\"" + identifier + "\" is not enabled");
  }
  session_.desktop().selectInputSource(identifier);
}

void Replay::enable(const Json& value) {
  auto identifiers = values::texts(value, "\"enable\"");
  if (identifiers.empty()) throw ReplayError("\"enable\" must not be empty");
  session_.desktop().enableInputSources(std::move(identifiers));
}

void Replay::keyboard(const Json& value) {
  values::requireObject(value, "\"keyboard\"", {"type", "layoutType"});
  setKeyboard(value);
}

void Replay::secure(const Json& value) {
  session_.desktop().secureInput().on = values::boolean(value, "\"secure\"");
}

void Replay::trusted(const Json& value) {
  session_.desktop().setTrusted(values::boolean(value, "\"trusted\""));
}

void Replay::tap(const Json& value) {
  auto& desktop = session_.desktop();
  const auto& what = values::text(value, "\"tap\"");
  if (what == "timeout") {
    desktop.disableTap(EventType::tapDisabledByTimeout);
  } else if (what == "user") {
    desktop.disableTap(EventType::tapDisabledByUserInput);
  } else if (what == "off") {
    desktop.eventTaps().disable();
  } else if (what == "deaf") {
    desktop.eventTaps().deafen();
  } else {
    throw ReplayError("unknown value \"" + what + "\"");
  }
}

void Replay::fail(const Json& value) {
  auto& desktop = session_.desktop();
  const auto& what = values::text(value, "\"fail\"");
  if (what == "source") {
    desktop.events().failsNextSource = true;
  } else if (what == "event") {
    desktop.events().failsNextEvent = true;
  } else if (what == "select") {
    desktop.inputSources().failNextSelection();
  } else if (what == "write") {
    // Writes that were asked for before this line are not the next one.
    IgnoreList::flush();
    desktop.files().failNextWrite();
  } else {
    throw ReplayError("unknown value \"" + what + "\"");
  }
}

void Replay::workspace(const Json& value) {
  const auto notification = workspaceNotificationNamed(values::text(value, "\"workspace\""));
  if (notification) session_.desktop().announceToWorkspace(*notification);
}

void Replay::menu(const Json& value) {
  const auto& title = values::text(value, "\"menu\"");
  if (!session_.desktop().chooseMenuItem(title)) {
    throw ReplayError("no menu item is titled \"" + title + "\"");
  }
}

void Replay::file(const Json& value) {
  if (!value.is_object()) throw ReplayError("\"file\" must be an object");
  IgnoreList::flush();
  for (const auto& [name, text] : value.items()) {
    if (!text.is_null()) {
      writeFile(values::fileName(name), values::text(text, "the text of \"" + name + "\""));
      continue;
    }
    std::error_code error;
    std::filesystem::remove(UserDict::directory() / values::fileName(name), error);
    if (error) throw ReplayError("cannot remove \"" + name + "\": " + error.message());
  }
}

void Replay::wait(const Json& value) {
  session_.desktop().wait(values::seconds(value, "\"wait\""));
}

void Replay::quit(const Json& value) {
  requireTrue(value, "\"quit\"");
  session_.quit();
}

void Replay::print(const Json& value) {
  auto printed = Json::object();
  for (const auto& field : values::texts(value, "\"print\"")) {
    printed[field] = printer_.value(field);
  }
  // Text from files may be anything; what is not UTF-8 shows as the replacement character.
  // Whoever drives a replay through a pipe waits for the answer.
  *out_ << printed.dump(-1, ' ', false, Json::error_handler_t::replace) << std::endl;
}

}  // namespace tessarok::virtualdesktop

#include "tests/desktops/macos/Mac.h"

#include <algorithm>
#include <array>
#include <utility>

#include "desktops/layouts/KeyText.h"
#include "desktops/virtual/EventDescription.h"
#include "platform/Desktop.h"
#include "text/Text.h"
#include "typing/DiagnosticLog.h"
#include "typing/KeyCodes.h"
#include "words/IgnoreList.h"
#include "words/ListQueue.h"

namespace tessarok::macostest {

namespace {

using fakemac::fakeSystem;
using layouts::KeyTable;

/// Makes an object for the desktop to own and keeps a pointer to it.
template <typename Service>
std::unique_ptr<Service> make(Service*& pointer) {
  auto made = std::make_unique<Service>();
  pointer = made.get();
  return made;
}

/// What keys carry that type nothing: F1 to F20 one and the same control character, Help and Clear
/// one each. Empty for other keys.
std::u16string controlCharacter(std::int64_t code) {
  constexpr std::array<std::int64_t, 20> kFunctionKeys = {
      122, 120, 99, 118, 96, 97, 98, 100, 101, 109, 103, 111, 105, 107, 113, 106, 64, 79, 80, 90};
  constexpr std::int64_t kHelp = 114;
  constexpr std::int64_t kClear = 71;
  if (code == kHelp) return u"\u0005";
  if (code == kClear) return u"\u001b";
  const bool isFunctionKey =
      std::find(kFunctionKeys.begin(), kFunctionKeys.end(), code) != kFunctionKeys.end();
  return isFunctionKey ? u"\u0010" : u"";
}

virtualdesktop::VirtualEvent asVirtual(const fakemac::Event& event) {
  virtualdesktop::VirtualEvent values;
  values.type = static_cast<platform::EventType>(event.type);
  values.code = event.keyCode;
  values.modifiers = event.flags;
  values.payload = event.text;
  values.posted = event.posted;
  return values;
}

}  // namespace

std::optional<KeyTable::Stroke> strokeFor(std::string_view character) {
  if (character == " ") return KeyTable::Stroke{keyCodes::space, false};
  if (character == "\n") return KeyTable::Stroke{keyCodes::returnKey, false};
  if (character == "\t") return KeyTable::Stroke{keyCodes::tab, false};
  if (character == "\b") return KeyTable::Stroke{keyCodes::backspace, false};
  const auto scalar = text::singleScalar(character);
  return scalar ? KeyTable::english().strokeFor(*scalar) : std::nullopt;
}

macos::ObjectiveCServices FakeObjectiveCServices::make(const std::filesystem::path& home) {
  return {.application = macostest::make(application),
          .statusBar = macostest::make(statusBar),
          .systemLog = macostest::make(systemLog),
          .workspace = macostest::make(workspace),
          .workspaceNotifications = macostest::make(workspaceNotifications),
          .homeDirectory = home,
          .applicationSupport = std::nullopt};
}

Mac::Mac(const std::filesystem::path& home, const std::filesystem::path& resources) {
  auto& system = fakeSystem();
  system.resourceDirectory = resources.string();
  system.onDelivered = [this](const fakemac::Event& event) { deliver(event); };
  system.onPosted = [this](const fakemac::Event& event) {
    posted_.push_back(describe(asVirtual(event)));
    postedEvents.push_back({event.type, event.keyCode, event.autorepeat, event.userData,
                            event.flags, event.text, event.sourceState});
  };
  system.onSelected = [] {
    platform::desktop().runLoop().async(
        [] { fakeSystem().announce(kTISNotifySelectedKeyboardInputSourceChanged); });
  };
  enable({"com.apple.keylayout.US", "com.apple.keylayout.RussianWin"});
  auto files = std::make_unique<virtualdesktop::VirtualFiles>(home);
  files_ = files.get();
  desktop_ = std::make_unique<macos::MacDesktop>(services_.make(home), std::move(files));
  platform::setDesktop(*desktop_);
  delegate_ = std::make_shared<AppDelegate>();
}

Mac::~Mac() {
  if (launched_) quit();
  waitForQueues();
  DiagnosticLog::drain();
}

void Mac::enable(const std::vector<std::string>& identifiers) {
  auto& system = fakeSystem();
  system.uninstallAll();
  for (const auto& identifier : identifiers) {
    system.install(identifier, KeyTable::ofLayout(identifier) != nullptr);
  }
  if (system.current != nullptr) return setCurrent(source());
  setCurrent(identifiers.front());
}

bool Mac::isEnabled(const std::string& identifier) const {
  const auto& all = fakeSystem().installed;
  return std::any_of(all.begin(), all.end(), [&](const auto* source) {
    return fakemac::as<fakemac::String>(source->get(kTISPropertyInputSourceID)).text == identifier;
  });
}

void Mac::setCurrent(const std::string& identifier) {
  for (auto* source : fakeSystem().installed) {
    const auto& name = fakemac::as<fakemac::String>(source->get(kTISPropertyInputSourceID)).text;
    if (name == identifier) return fakeSystem().makeCurrent(source);
  }
}

std::string Mac::source() {
  return fakemac::as<fakemac::String>(fakeSystem().current->get(kTISPropertyInputSourceID)).text;
}

void Mac::launch() {
  launched_ = true;
  delegate_->applicationDidFinishLaunching();
  endTurn();
}

void Mac::quit() {
  if (std::exchange(ended_, true)) return;
  delegate_->applicationWillTerminate();
  fakeSystem().runMainQueue();
}

void Mac::waitForQueues() const {
  // They are made on first use, of the program's desktop.
  if (!launched_) return;
  IgnoreList::flush();
  ListQueue::drain();
}

void Mac::endTurn() {
  waitForQueues();
  fakeSystem().runMainQueue();
  if (services_.application->terminationRequested) quit();
}

void Mac::keyDown(const Key& key) {
  fakeSystem().lastKeyDownAt = fakeSystem().uptime;
  send(kCGEventKeyDown, key);
  endTurn();
}

void Mac::keyUp(const Key& key) {
  send(kCGEventKeyUp, key);
  endTurn();
}

void Mac::stroke(const KeyTable::Stroke& stroke) {
  const Key key{.code = stroke.code,
                .flags = stroke.shift ? CGEventFlags{kCGEventFlagMaskShift} : 0};
  fakeSystem().lastKeyDownAt = fakeSystem().uptime;
  // Both are one turn: what the press has queued waits for the release.
  send(kCGEventKeyDown, key);
  send(kCGEventKeyUp, key);
  endTurn();
}

void Mac::type(std::string_view text) {
  for (const auto character : text::Characters(text))
    stroke(strokeFor(character).value());
}

void Mac::send(CGEventType type, const Key& key) {
  fakemac::Event event;
  event.type = type;
  event.keyCode = key.code;
  event.flags = key.flags;
  event.autorepeat = key.autorepeat ? 1 : 0;
  event.userData = key.userData;
  event.text = key.text.value_or(controlCharacter(key.code));
  if (event.text.empty() && !key.text) {
    event.text = layouts::keyText(currentTable(), key.code, key.flags);
  }
  fakeSystem().send(event);
}

const KeyTable& Mac::currentTable() {
  const auto* table = KeyTable::ofLayout(source());
  return table != nullptr ? *table : KeyTable::english();
}

void Mac::deliver(const fakemac::Event& event) {
  const auto values = asVirtual(event);
  delivered_.push_back(describe(values));
  if (event.type == kCGEventKeyUp) return;
  if (event.type != kCGEventKeyDown) return textField_.moveCaretToEnd();
  // A text field takes such a key for no text, whatever it carries.
  if (!controlCharacter(event.keyCode).empty()) return;
  textField_.keyDown(values);
}

void Mac::click(CGEventType button) {
  send(button, {.text = u""});
  endTurn();
}

void Mac::select(const std::string& identifier) {
  setCurrent(identifier);
  fakeSystem().onSelected();
  endTurn();
}

void Mac::announceEnabled() {
  fakeSystem().announce(kTISNotifyEnabledKeyboardInputSourcesChanged);
  endTurn();
}

void Mac::setTrusted(bool trusted) {
  auto& system = fakeSystem();
  system.trusted = trusted;
  system.mayPost = trusted;
  if (!trusted && system.tap != nullptr) system.tap->isEnabled = false;
}

void Mac::disableTap(CGEventType pseudoEvent) {
  fakeSystem().disableTap(pseudoEvent);
  endTurn();
}

void Mac::announceToWorkspace(platform::Notification notification) {
  services_.workspaceNotifications->announce(notification);
  endTurn();
}

std::string Mac::leftovers() {
  // The layouts that the corrector has found stay with it for the life of the process.
  constexpr std::pair<fakemac::Kind, const char*> kinds[] = {
      {fakemac::Kind::array, "array"},
      {fakemac::Kind::dictionary, "dictionary"},
      {fakemac::Kind::event, "event"},
      {fakemac::Kind::eventSource, "event source"},
      {fakemac::Kind::machPort, "tap"},
      {fakemac::Kind::number, "number"},
      {fakemac::Kind::runLoopSource, "run-loop source"},
      {fakemac::Kind::runLoopTimer, "timer"},
      {fakemac::Kind::url, "URL"},
  };
  std::string found;
  for (const auto& [kind, name] : kinds) {
    if (fakemac::liveObjects(kind) > 0) found += std::string(found.empty() ? "" : ", ") + name;
  }
  // Each source has a name of its own.
  if (fakemac::liveObjects(fakemac::Kind::string) !=
      fakemac::liveObjects(fakemac::Kind::inputSource)) {
    found += ", string";
  }
  if (!fakeSystem().observers.empty()) found += ", observer";
  return found;
}

bool Mac::choose(const std::string& title) {
  const bool found = services_.statusBar->choose(title);
  endTurn();
  return found;
}

void Mac::wait(double seconds) {
  fakeSystem().advance(seconds);
  endTurn();
}

}  // namespace tessarok::macostest

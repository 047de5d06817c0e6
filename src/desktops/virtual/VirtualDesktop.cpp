#include "desktops/virtual/VirtualDesktop.h"

#include "desktops/layouts/KeyText.h"
#include "desktops/virtual/EventDescription.h"
#include "platform/EventFlags.h"

namespace tessarok::virtualdesktop {

namespace {

using platform::EventType;
using platform::Notification;
namespace flags = platform::eventFlags;

}  // namespace

VirtualDesktop::VirtualDesktop(const std::filesystem::path& home,
                               std::optional<std::filesystem::path> resources)
    : files_(home),
      bundle_(std::move(resources)),
      eventTaps_([this](const VirtualEvent& event) { deliver(event); }),
      keyboard_(runLoop_) {
  runLoop_.onTurn = [this] { serialQueues_.drain(); };
  inputSources_.onSelected = [this] { queueSelectedNotification(); };
  eventTaps_.onPosted = [this](const VirtualEvent& event) {
    if (recordsEvents) posted_.push_back(describe(event));
  };
}

void VirtualDesktop::keyDown(const KeyDown& key) {
  keyboard_.noteKeyDown();
  sendKey(EventType::keyDown, key);
  endTurn();
}

void VirtualDesktop::keyUp(KeyCode code, std::uint64_t modifiers) {
  sendKey(EventType::keyUp, {.code = code, .modifiers = modifiers});
  endTurn();
}

void VirtualDesktop::stroke(const KeyTable::Stroke& stroke) {
  const std::uint64_t modifiers = stroke.shift ? flags::shift : 0;
  const KeyDown key{.code = stroke.code, .modifiers = modifiers};
  keyboard_.noteKeyDown();
  // Both are one turn: what the press has queued waits for the release.
  sendKey(EventType::keyDown, key);
  sendKey(EventType::keyUp, key);
  endTurn();
}

void VirtualDesktop::sendKey(EventType type, const KeyDown& key) {
  VirtualEvent event;
  event.type = type;
  event.code = key.code;
  event.modifiers = key.modifiers;
  event.autorepeat = key.autorepeat;
  event.userData = key.userData;
  event.payload = key.characters ? *key.characters
                                 : layouts::keyText(inputSources_.table(), key.code, key.modifiers);
  eventTaps_.send(event);
}

void VirtualDesktop::deliver(const VirtualEvent& event) {
  if (recordsEvents) delivered_.push_back(describe(event));
  if (event.type == EventType::keyUp) return;
  if (event.type == EventType::keyDown) {
    textField_.keyDown(event);
  } else {
    textField_.moveCaretToEnd();
  }
}

void VirtualDesktop::click(EventType button) {
  VirtualEvent event;
  event.type = button;
  eventTaps_.send(event);
  endTurn();
}

void VirtualDesktop::queueSelectedNotification() {
  runLoop_.async(
      [this] { inputSourceNotifications_.announce(Notification::selectedInputSourceChanged); });
}

void VirtualDesktop::selectInputSource(const std::string& identifier) {
  inputSources_.setCurrent(identifier);
  queueSelectedNotification();
  endTurn();
}

void VirtualDesktop::enableInputSources(std::vector<std::string> identifiers) {
  inputSources_.enable(std::move(identifiers));
  runLoop_.async(
      [this] { inputSourceNotifications_.announce(Notification::enabledInputSourcesChanged); });
  endTurn();
}

void VirtualDesktop::setTrusted(bool trusted) {
  accessibility_.trusted = trusted;
  eventTaps_.setTrusted(trusted);
}

void VirtualDesktop::disableTap(EventType pseudoEvent) {
  eventTaps_.disableWithPseudoEvent(pseudoEvent);
  endTurn();
}

void VirtualDesktop::announceToWorkspace(Notification notification) {
  runLoop_.async([this, notification] { workspaceNotifications_.announce(notification); });
  endTurn();
}

bool VirtualDesktop::chooseMenuItem(const std::string& title) {
  const bool found = statusBar_.choose(title);
  endTurn();
  return found;
}

void VirtualDesktop::wait(double seconds) {
  runLoop_.advance(seconds);
  endTurn();
}

}  // namespace tessarok::virtualdesktop

#include "desktops/web/WebDesktop.h"

#include <algorithm>

#include "desktops/layouts/KeyText.h"
#include "platform/EventFlags.h"
#include "text/Text.h"

namespace tessarok::web {

namespace {

using layouts::KeyTable;
using platform::EventType;
using platform::Notification;
namespace flags = platform::eventFlags;

/// A key of no layout, for what comes as text.
constexpr KeyCode kTextKey = 0xFFFF;
/// A page that was asleep for longer has no use for all the ticks that it has missed, seconds.
constexpr double kLongestStep = 60;

bool isLetter(char16_t unit) {
  std::string character;
  text::appendScalar(char32_t{unit}, character);
  return text::isLetter(character);
}

}  // namespace

WebDesktop::WebDesktop() {
  inputSources_.onSelected = [this] { queueSelectedNotification(); };
}

void WebDesktop::advanceTo(double now) {
  const auto step = std::clamp(now - now_, 0.0, kLongestStep);
  now_ = now;
  runLoop_.advance(step);
  runLoop_.runQueue();
}

const FieldEdit& WebDesktop::keyDown(const KeyDown& key) {
  keyboard_.noteKeyDown();
  event_.code = meaningOf(key.code);
  event_.modifiers = key.modifiers;
  event_.autorepeat = key.autorepeat;
  event_.payload = textOf(key);
  const bool isOfTable = inputSources_.table().character(key.code, false).has_value();
  return send(EventType::keyDown,
              isOfTable ? std::u16string_view(event_.payload) : std::u16string_view());
}

void WebDesktop::keyUp(KeyCode code, std::uint64_t modifiers) {
  event_.code = meaningOf(code);
  event_.modifiers = modifiers;
  event_.autorepeat = false;
  event_.payload.clear();
  send(EventType::keyUp);
}

const FieldEdit& WebDesktop::textTyped(std::u16string_view text) {
  keyboard_.noteKeyDown();
  event_.code = kTextKey;
  event_.modifiers = 0;
  event_.autorepeat = false;
  event_.payload = text;
  return send(EventType::keyDown);
}

void WebDesktop::click() {
  event_.code = 0;
  event_.modifiers = 0;
  event_.payload.clear();
  send(EventType::leftMouseDown);
}

void WebDesktop::focusMoved() {
  workspaceNotifications_.announce(Notification::applicationActivated);
}

void WebDesktop::selectLayout(Language language) {
  inputSources_.setCurrent(language);
  queueSelectedNotification();
  runLoop_.runQueue();
}

Language WebDesktop::layout() const {
  return &inputSources_.table() == &KeyTable::russian() ? Language::russian : Language::english;
}

void WebDesktop::chooseMenuItem(std::string_view title) {
  static_cast<void>(statusBar_.choose(title));
  runLoop_.runQueue();
}

/// The grave accent's key is that of ё in the Russian layout: there it is a letter and pauses
/// nothing, as on X11.
KeyCode WebDesktop::meaningOf(KeyCode code) const {
  const bool isLetterHere = code == keyCodes::grave && layout() == Language::russian;
  return isLetterHere ? kTextKey : code;
}

std::u16string WebDesktop::textOf(const KeyDown& key) const {
  auto modifiers = key.modifiers;
  const auto plain = inputSources_.table().character(key.code, false);
  // Caps Lock is Shift for letters, and with Shift none.
  if ((modifiers & flags::capsLock) != 0 && plain && isLetter(*plain)) modifiers ^= flags::shift;
  return layouts::keyText(inputSources_.table(), key.code, modifiers);
}

const FieldEdit& WebDesktop::send(EventType type, std::u16string_view keyText) {
  event_.type = type;
  const auto& edit = eventTaps_.send(event_, keyText);
  runLoop_.runQueue();
  return edit;
}

void WebDesktop::queueSelectedNotification() {
  runLoop_.async(
      [this] { inputSourceNotifications_.announce(Notification::selectedInputSourceChanged); });
}

}  // namespace tessarok::web

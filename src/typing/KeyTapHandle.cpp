// One event: which it is, what it does to the word being typed, and whether it goes on to the
// application. Whatever cannot be understood makes the word unknown and passes unchanged.

#include <algorithm>
#include <array>

#include "platform/Desktop.h"
#include "platform/EventFlags.h"
#include "text/Text.h"
#include "typing/InputSource.h"
#include "typing/KeyTap.h"
#include "typing/Uptime.h"
#include "words/LayoutMap.h"

namespace tessarok {

namespace {

using platform::Event;
using platform::EventType;
namespace flags = platform::eventFlags;

constexpr std::uint64_t kShortcutModifiers = flags::command | flags::control | flags::option;
/// Longer texts come from no key of a layout.
constexpr std::size_t kPayloadUnits = 8;
/// The check for the end of a pause runs a little late, so that it finds the pause over.
constexpr double kPauseCheckDelay = 0.1;

template <typename Keys>
bool contains(const Keys& keys, KeyCode keyCode) {
  return std::find(keys.begin(), keys.end(), keyCode) != keys.end();
}

bool isBoundaryKey(KeyCode keyCode) {
  return keyCode == KeyTap::kSpace || keyCode == KeyTap::kReturn || keyCode == KeyTap::kEnter ||
         keyCode == KeyTap::kTab;
}

bool isWordCharacter(std::string_view character) {
  return text::isLetter(character) || LayoutMap::isRussianLetterKey(character) ||
         text::isNumber(character) || character == "_";
}

bool isOfEitherLayout(std::string_view letter) {
  return LayoutMap::isKeyOf(Language::english, letter) ||
         LayoutMap::isKeyOf(Language::russian, letter);
}

}  // namespace

/// A key-down, read once.
struct KeyTap::KeyPress {
  Event* event;
  KeyCode code;
  std::uint64_t modifiers;

  [[nodiscard]] bool holds(std::uint64_t mask) const { return (modifiers & mask) != 0; }
  [[nodiscard]] bool isShortcut() const { return holds(kShortcutModifiers); }
  [[nodiscard]] bool isCaretMover() const { return contains(kCaretMovers, code); }
  [[nodiscard]] bool isPlainBoundary() const { return !isShortcut() && isBoundaryKey(code); }
  [[nodiscard]] bool isManualConversion() const {
    return code == kSpace && holds(flags::option) &&
           !holds(flags::shift | flags::control | flags::command);
  }
  /// What it does to an armed rejection. ⌃Space and ⌘Space are the shortcuts that switch layouts,
  /// after which it may go on.
  [[nodiscard]] WordState::ArmedRejection rejectionAfter() const {
    const bool switchesLayout =
        code == kSpace && !holds(flags::option) && holds(flags::command) != holds(flags::control);
    return switchesLayout ? WordState::ArmedRejection::keepBetweenWords
                          : WordState::ArmedRejection::drop;
  }
};

Event* KeyTap::handle(platform::EventTapProxy* proxy, EventType type, Event* event) {
  callbackProxy_ = proxy;
  const struct Clear {
    platform::EventTapProxy*& proxy;
    ~Clear() { proxy = nullptr; }
  } clear{callbackProxy_};

  if (type == EventType::tapDisabledByTimeout || type == EventType::tapDisabledByUserInput) {
    return handleDisabledTap(type, event);
  }
  if (event == nullptr || event->sourceUserData() == kMarker) return event;
  const auto keyCode = event->keyCode();
  switch (type) {
    case EventType::leftMouseDown:
    case EventType::rightMouseDown:
    case EventType::otherMouseDown:
      resetWord();
      return event;
    case EventType::keyUp:
      return handleKeyUp(event, keyCode);
    case EventType::keyDown:
      return handleKeyDown(event, keyCode);
    default:
      if (platform::desktop().secureInput().isEnabled()) forgetForSecureInput();
      return event;
  }
}

Event* KeyTap::handleDisabledTap(EventType type, Event* event) {
  dbg([type] {
    return "*** TAP DISABLED type=" + std::to_string(static_cast<std::uint32_t>(type)) +
           " — re-enabling ***";
  });
  word_.forget();
  if (tap_) tap_->enable(true);
  return event;
}

Event* KeyTap::handleKeyUp(Event* event, KeyCode keyCode) {
  return swallowedKeyUps_.erase(keyCode) > 0 ? nullptr : event;
}

Event* KeyTap::handleKeyDown(Event* event, KeyCode keyCode) {
  lastKeyEventAt_ = uptime();
  swallowedKeyUps_.erase(keyCode);
  if (platform::desktop().secureInput().isEnabled()) {
    forgetForSecureInput();
    return event;
  }
  const KeyPress key{event, keyCode, event->flags()};
  if (!enabled) {
    ignoreWhileOff(key);
    return event;
  }
  if (!InputSource::isPreparedForCurrentInputSource()) {
    ignoreWhileUnprepared(key);
    return event;
  }
  if (startsPause(key)) startPause();
  if (isPaused()) {
    ignoreWhilePaused(key);
    return event;
  }
  if (key.isManualConversion()) {
    if (!event->isAutorepeat()) manualConvert();
    swallowKeyUpOf(keyCode);
    return nullptr;
  }
  if (key.isShortcut()) {
    handleShortcut(key);
    return event;
  }
  if (key.isCaretMover()) {
    resetWord();
    return event;
  }
  if (keyCode == kDelete) {
    handleBackspace();
    return event;
  }
  const bool fixed = isBoundaryKey(keyCode) ? handleBoundaryKey(key) : handleText(key);
  if (!fixed) return event;
  swallowKeyUpOf(keyCode);
  return nullptr;
}

void KeyTap::resetWord() {
  word_.reset();
}

void KeyTap::forgetForSecureInput() {
  if (!word_.buffer().empty()) dbg([] { return "tracking cleared: Secure Input"; });
  resetWord();
}

void KeyTap::ignoreWhileOff(const KeyPress& key) {
  if (key.isCaretMover() || key.isPlainBoundary()) {
    resetWord();
  } else {
    word_.markUntrackable();
  }
}

void KeyTap::ignoreWhileUnprepared(const KeyPress& key) {
  if (key.isCaretMover()) {
    resetWord();
  } else if (key.isShortcut()) {
    invalidateInputSourceContext(key.rejectionAfter());
  } else if (isBoundaryKey(key.code)) {
    resetWord();
  } else {
    word_.forget();
  }
}

void KeyTap::ignoreWhilePaused(const KeyPress& key) {
  word_.clearBuffer();
  if (key.isCaretMover() || key.isPlainBoundary()) {
    resetWord();
  } else {
    word_.markUntrackable();
  }
}

bool KeyTap::startsPause(const KeyPress& key) const {
  return !key.isShortcut() && contains(kPauseKeys, key.code) && !key.event->isAutorepeat();
}

bool KeyTap::isPaused() const {
  return uptime() < pausedUntil_;
}

void KeyTap::startPause() {
  pausedUntil_ = uptime() + kPauseDuration;
  word_.forget();
  dbg([] {
    return "*** PAUSE: auto-fix off for " + std::to_string(static_cast<int>(kPauseDuration)) +
           "s ***";
  });
  if (onPauseChange) onPauseChange();
  platform::desktop().runLoop().after(kPauseDuration + kPauseCheckDelay, [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->endPauseIfOver();
  });
}

void KeyTap::endPauseIfOver() {
  // The pause key pressed again has moved the end on; its own check will find it over.
  if (isPaused()) return;
  dbg([] { return "*** PAUSE over — auto-fix on ***"; });
  if (onPauseChange) onPauseChange();
}

void KeyTap::handleShortcut(const KeyPress& key) {
  if (!word_.buffer().empty()) dbg([] { return "tracking cleared: shortcut modifiers"; });
  if (key.isCaretMover()) {
    resetWord();
  } else {
    invalidateInputSourceContext(key.rejectionAfter());
  }
}

bool KeyTap::handleBoundaryKey(const KeyPress& key) {
  if (key.code == kSpace) {
    const bool fixed = evaluateAndFix({" "});
    word_.clearBuffer();
    return fixed;
  }
  const bool fixed = evaluateAndFix({key.code == kTab ? "\t" : "\n", key.event});
  resetWord();
  return fixed;
}

void KeyTap::handleBackspace() {
  if (word_.erase(uptime())) dbg([] { return "  rejection armed"; });
}

bool KeyTap::handleText(const KeyPress& key) {
  std::array<char16_t, kPayloadUnits> units{};
  const auto length = key.event->unicodeString(units);
  if (length == 0) {
    handleEmptyPayload();
    return false;
  }
  if (length > units.size()) {
    noteUnusablePayload(length);
    word_.forget();
    return false;
  }
  text::assignUtf16({units.data(), length}, typedText_);
  const std::string_view typed = typedText_;
  if (text::firstCharacter(typed).size() != typed.size()) {
    noteUnusablePayload(length);
    isWordCharacter(text::lastCharacter(typed)) ? word_.forget() : resetWord();
    return false;
  }
  if (!isWordCharacter(typed)) return handlePunctuation(key.event, typed, length);
  handleWordCharacter(typed, length);
  return false;
}

void KeyTap::handleEmptyPayload() {
  dbg([this] {
    return "tracking cleared: empty Unicode payload previousCount=" +
           std::to_string(text::count(word_.buffer()));
  });
  // Between words nothing is lost, unless the key added to the word just before the caret.
  word_.invalidate(WordState::ArmedRejection::drop);
}

void KeyTap::noteUnusablePayload(std::size_t units) {
  dbg([units] {
    return "tracking cleared: multi-character payload units=" + std::to_string(units);
  });
}

bool KeyTap::handlePunctuation(Event* event, std::string_view character, std::size_t units) {
  const bool endsLine = character == "\n" || character == "\t";
  // A key that types nothing, such as F5, may carry a control character all the same: what the
  // person wants is the key.
  const bool isKey = !endsLine && text::isControl(character);
  const bool fixed = evaluateAndFix({character, isKey ? event : nullptr});
  if (endsLine || isKey || units > 1) {
    resetWord();
  } else {
    word_.clearBuffer();
  }
  return fixed;
}

void KeyTap::handleWordCharacter(std::string_view character, std::size_t units) {
  if (units > 1 || (text::isLetter(character) && !isOfEitherLayout(character))) {
    word_.forget();
  } else {
    word_.append(character);
  }
}

void KeyTap::invalidateInputSourceContext(WordState::ArmedRejection rejection) {
  word_.invalidate(rejection);
}

}  // namespace tessarok

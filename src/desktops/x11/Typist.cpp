#include "desktops/x11/Typist.h"

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <algorithm>
#include <xkbcommon/xkbcommon.h>

namespace tessarok::x11 {

namespace {

/// Seconds for which an application may still look up what a spare key gives.
constexpr double kSpareLifetime = 2.0;
/// Milliseconds between a key's way up and down. With less, and both waiting to be looked at, SDL
/// takes them for the repetition of a held key, which games and many other programs drop.
constexpr unsigned long kApart = 2;
/// What went up longer ago is as far away in the server's time too.
constexpr std::chrono::milliseconds kRecently{5};

/// Calls `work` for every scalar of a text; broken surrogates are left out.
template <typename Work>
void forEachScalar(std::u16string_view units, Work work) {
  for (std::size_t i = 0; i < units.size(); ++i) {
    const char16_t unit = units[i];
    if (unit < 0xD800 || unit > 0xDFFF) {
      work(char32_t{unit});
    } else if (unit < 0xDC00 && i + 1 < units.size()) {
      ++i;
      work(((char32_t{unit} - 0xD800u) << 10) + (char32_t{units[i]} - 0xDC00u) + 0x10000u);
    }
  }
}

bool isText(const X11Event& event) {
  return event.isText && event.xKey == 0;
}

bool erases(const X11Event& event) {
  return event.type == platform::EventType::keyDown && event.code == keyCodes::backspace;
}

}  // namespace

Typist::~Typist() {
  if (connection_.isLost()) return;
  releaseAll();
  clearSpare();
  connection_.flush();
}

void Typist::post(std::uint8_t key, bool isDown, unsigned long delay) {
  if (connection_.isLost()) return;
  // It is the server that waits.
  XTestFakeKeyEvent(connection_.display(), key, isDown ? True : False, delay);
  if (!isDown) released_[key] = Clock::now();
  down_[key] = isDown;
}

unsigned long Typist::delayBefore(std::uint8_t key) const {
  const auto released = released_[key];
  const bool isTaken = released <= taken_;
  return !isTaken && Clock::now() - released < kRecently ? kApart : 0;
}

void Typist::press(std::uint8_t key) {
  post(key, true, delayBefore(key));
}

void Typist::repeat(std::uint8_t key) {
  release(key);
  post(key, true);
}

void Typist::release(std::uint8_t key) {
  if (down_[key]) post(key, false);
}

void Typist::tap(std::uint8_t key) {
  // A key that a finger is still on.
  release(key);
  press(key);
  post(key, false);
}

void Typist::releaseAll() {
  if (down_.none()) return;
  for (unsigned key = 0; key < down_.size(); ++key) {
    if (down_[key]) post(static_cast<std::uint8_t>(key), false);
  }
  layouts_.markStateStale();
  connection_.flush();
}

std::vector<std::uint8_t> Typist::releaseModifiers() {
  std::vector<std::uint8_t> held;
  for (unsigned number = 0; number < down_.size(); ++number) {
    const auto key = static_cast<std::uint8_t>(number);
    if (down_[key] && layouts_.keymap().isHeldModifier(key)) held.push_back(key);
  }
  if (held.empty()) return held;
  tapNothing();
  for (const auto key : held)
    post(key, false);
  layouts_.markStateStale();
  return held;
}

void Typist::holdAgain(std::vector<std::uint8_t>& held) {
  if (held.empty()) return;
  for (const auto key : held)
    post(key, true);
  tapNothing();
  layouts_.markStateStale();
  held.clear();
}

void Typist::tapNothing() {
  const auto& spare = layouts_.keymap().spareKeys();
  if (!spare.empty()) tap(spare.back());
}

void Typist::type(const std::vector<X11Event>& events) {
  if (events.empty()) return;
  const unsigned group = layouts_.state().group;
  mapMissing(events, group);
  auto held = releaseModifiers();
  const bool isPaced = std::ranges::any_of(events, erases);
  if (isPaced) {
    pace_.begin();
    keepPace();
  }
  for (const auto& event : events) {
    const bool isPress = event.type == platform::EventType::keyDown;
    if (isText(event)) {
      if (isPress) typeText(event.payload, group);
      continue;
    }
    if (event.xKey == 0) continue;
    // A key that the person pressed goes out with the modifiers that it came with.
    if (event.modifiers != 0) holdAgain(held);
    layouts_.lockGroup(group);
    if (isPress) tap(event.xKey);
    if (isPaced && erases(event)) keepPace();
  }
  layouts_.lockGroup(group);
  holdAgain(held);
  connection_.flush();
  if (isPaced) pace_.end();
}

void Typist::keepPace() {
  if (pace_.wait()) taken_ = Clock::now();
}

void Typist::typeText(std::u16string_view units, unsigned group) {
  forEachScalar(units, [&](char32_t character) { typeCharacter(character, group); });
}

void Typist::typeCharacter(char32_t character, unsigned group) {
  if (const auto spare = spare_.find(character); spare != spare_.end()) return tap(spare->second);
  const auto& keymap = layouts_.keymap();
  const auto stroke = keymap.strokeFor(character, group, layouts_.state().lockedModifiers);
  if (!stroke) return;
  layouts_.lockGroup(stroke->group);
  if (stroke->levelThree) post(keymap.levelThreeKey(), true);
  if (stroke->shift) post(keymap.shiftKey(), true);
  tap(stroke->key);
  if (stroke->shift) post(keymap.shiftKey(), false);
  if (stroke->levelThree) post(keymap.levelThreeKey(), false);
}

void Typist::mapMissing(const std::vector<X11Event>& events, unsigned group) {
  const auto locked = layouts_.state().lockedModifiers;
  std::u32string missing;
  for (const auto& event : events) {
    if (!isText(event)) continue;
    forEachScalar(event.payload, [&](char32_t character) {
      if (spare_.contains(character) || missing.find(character) != std::u32string::npos) return;
      if (!layouts_.keymap().strokeFor(character, group, locked)) missing += character;
    });
  }
  if (!missing.empty()) mapSpare(missing);
  if (!spare_.empty()) clearSpareLater();
}

void Typist::mapSpare(const std::u32string& characters) {
  if (connection_.isLost()) return;
  // The last one stays without meaning, to be put between modifiers.
  const auto keys = layouts_.keymap().spareKeys();
  if (spare_.size() + characters.size() >= keys.size()) clearSpare();
  std::size_t next = 0;
  for (const char32_t character : characters) {
    const auto isUsed = [this](std::uint8_t key) {
      return std::any_of(spare_.begin(), spare_.end(),
                         [key](const auto& entry) { return entry.second == key; });
    };
    while (next + 1 < keys.size() && isUsed(keys[next]))
      ++next;
    if (next + 1 >= keys.size()) return;
    KeySym symbol = xkb_utf32_to_keysym(character);
    XChangeKeyboardMapping(connection_.display(), keys[next], 1, &symbol, 1);
    spare_.emplace(character, keys[next]);
  }
  XSync(connection_.display(), False);
}

void Typist::clearSpareLater() {
  const auto use = ++spareUse_;
  runLoop_.after(kSpareLifetime, [this, use] {
    if (use == spareUse_) clearSpare();
  });
}

void Typist::clearSpare() {
  if (connection_.isLost()) return;
  for (const auto& [character, key] : spare_) {
    KeySym none = NoSymbol;
    XChangeKeyboardMapping(connection_.display(), key, 1, &none, 1);
  }
  if (!spare_.empty()) connection_.flush();
  spare_.clear();
}

}  // namespace tessarok::x11

// Retyping: the only way the program changes text on the screen. And conversion by hand.

#include <vector>

#include "platform/Desktop.h"
#include "text/CheckedArithmetic.h"
#include "text/Text.h"
#include "typing/InputSource.h"
#include "typing/KeyTap.h"
#include "words/IgnoreList.h"
#include "words/LayoutMap.h"
#include "words/Letters.h"

namespace tessarok {

namespace {

using platform::Event;
using platform::EventSource;
using platform::EventType;

/// A text event carries its Character as a string; the key itself means nothing.
constexpr KeyCode kTextKey = 0;
/// Longer Characters do not fit into an event.
constexpr std::size_t kMaxCharacterUnits = 20;

/// Makes the events of one replacement. Nothing is posted before all of them exist, so a failure
/// half-way leaves no half-erased word.
class EventBatch {
 public:
  EventBatch(EventSource& source, std::size_t room) : source_(source) { events_.reserve(room); }

  [[nodiscard]] bool addErase() {
    return addKey(KeyTap::kDelete, true, {}) && addKey(KeyTap::kDelete, false, {});
  }
  [[nodiscard]] bool addCharacter(std::string_view character) {
    const auto units = text::utf16(character);
    if (units.size() > kMaxCharacterUnits) return false;
    return addKey(kTextKey, true, units) && addKey(kTextKey, false, units);
  }
  /// Key code, modifiers and text of the event stay as they are.
  [[nodiscard]] bool addAgain(const Event& event) {
    auto down = event.copy();
    auto up = event.copy();
    if (!down || !up) return false;
    add(std::move(down), EventType::keyDown);
    add(std::move(up), EventType::keyUp);
    return true;
  }
  [[nodiscard]] std::size_t size() const { return events_.size(); }

  void post(platform::EventTapProxy& proxy) {
    for (const auto& event : events_) {
      event->setSourceUserData(KeyTap::kMarker);
      proxy.post(*event);
    }
  }

 private:
  bool addKey(KeyCode keyCode, bool isDown, std::u16string_view units) {
    auto event = platform::desktop().events().createKeyboardEvent(source_, keyCode, isDown);
    if (!event) return false;
    event->setFlags(0);
    if (!units.empty()) event->setUnicodeString(units);
    events_.push_back(std::move(event));
    return true;
  }
  void add(std::unique_ptr<Event> copy, EventType type) {
    copy->setSource(source_);
    copy->setType(type);
    copy->setAutorepeat(false);
    events_.push_back(std::move(copy));
  }

  EventSource& source_;
  std::vector<std::unique_ptr<Event>> events_;
};

bool fill(EventBatch& batch, std::size_t deleteCount, std::string_view text,
          const Event* actionEvent) {
  for (std::size_t i = 0; i < deleteCount; ++i) {
    if (!batch.addErase()) return false;
  }
  for (const auto character : text::Characters(text)) {
    if (!batch.addCharacter(character)) return false;
  }
  return actionEvent == nullptr || batch.addAgain(*actionEvent);
}

/// The letters of a word, as far as the layouts know them.
struct LetterCounts {
  std::size_t all = 0;
  std::size_t russian = 0;
  bool hasForeign = false;
  bool hasLetterKey = false;
};

LetterCounts countLetters(std::string_view word) {
  LetterCounts letters;
  for (const auto character : text::Characters(word)) {
    letters.hasLetterKey = letters.hasLetterKey || LayoutMap::isRussianLetterKey(character);
    if (!text::isLetter(character)) continue;
    const bool isRussian = LayoutMap::isKeyOf(Language::russian, character);
    const bool isEnglish = LayoutMap::isKeyOf(Language::english, character);
    letters.hasForeign = letters.hasForeign || (!isRussian && !isEnglish);
    if (isRussian) ++letters.russian;
    ++letters.all;
  }
  return letters;
}

}  // namespace

bool KeyTap::replace(std::size_t deleteCount, std::string_view text,
                     std::optional<Language> switchTo, Event* actionEvent) {
  if (callbackProxy_ == nullptr) {
    dbg([] { return "replacement aborted: missing callback proxy"; });
    return false;
  }
  auto& desktop = platform::desktop();
  const auto source =
      desktop.secureInput().isEnabled() ? nullptr : desktop.events().createPrivateSource();
  if (!source) {
    dbg([] { return "replacement aborted: Secure Input or event source unavailable"; });
    return false;
  }
  const auto textCount = text::count(text);
  EventBatch batch(*source, 2 * checkedAdd(deleteCount, textCount) + 2);
  if (!fill(batch, deleteCount, text, actionEvent)) return false;
  batch.post(*callbackProxy_);
  dbg([&] {
    return "replacement posted: deleteCount=" + std::to_string(deleteCount) +
           " textCount=" + std::to_string(textCount) +
           " eventCount=" + std::to_string(batch.size());
  });
  if (!switchTo) return true;
  const bool issued = InputSource::switchTo(*switchTo);
  dbg([issued] {
    return std::string("  input-source selection issued=") + DiagnosticLog::spelled(issued);
  });
  return true;
}

std::optional<KeyTap::ManualSwap> KeyTap::manualSwap(std::string_view word) {
  const auto letters = countLetters(word);
  if (letters.hasForeign) return std::nullopt;
  if (letters.all == 0 && !letters.hasLetterKey) return std::nullopt;
  // An even mixture counts as Russian; keys without letters were meant to be.
  const bool isRussian = letters.all > 0 && letters.all <= 2 * letters.russian;
  auto converted = LayoutMap::convert(word, isRussian ? Language::russian : Language::english);
  if (converted == word) return std::nullopt;
  const auto language = letters::layoutOf(converted);
  return ManualSwap{std::move(converted), language};
}

void KeyTap::manualConvert() {
  if (!word_.buffer().empty()) {
    convertWordBeingTyped();
  } else if (word_.lastFix() != nullptr) {
    convertLastWord();
  }
}

void KeyTap::convertWordBeingTyped() {
  const auto swap = manualSwap(word_.buffer());
  if (!swap) return;
  const auto count = text::count(word_.buffer());
  dbg([count] { return "manual fix buffer count=" + std::to_string(count); });
  if (!replace(count, swap->converted, swap->language, nullptr)) {
    resetWord();
    return;
  }
  word_.convertBuffer(swap->converted, swap->language);
}

void KeyTap::convertLastWord() {
  const auto& fix = *word_.lastFix();
  const auto swap = manualSwap(fix.text);
  if (!swap) return;
  const auto* autoFix = word_.lastAutoFix();
  const bool isUndo = autoFix != nullptr && autoFix->converted == fix.text;
  const auto newWord = isUndo ? autoFix->typed : swap->converted;
  const auto textCount = text::count(fix.text);
  const auto tailCount = text::count(fix.tail);
  dbg([&] {
    return "manual fix last count=" + std::to_string(textCount) +
           " tail=" + std::to_string(tailCount);
  });
  if (!replace(checkedAdd(textCount, tailCount), newWord + fix.tail, swap->language, nullptr)) {
    resetWord();
    return;
  }
  if (isUndo) {
    dbg([] { return "  manual undo of auto-fix — learning rejection"; });
    IgnoreList::recordRejection(text::lowercased(autoFix->rejectionWord));
  }
  word_.convertLastFix(newWord, swap->language);
}

}  // namespace tessarok

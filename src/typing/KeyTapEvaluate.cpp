// The end of a word: left as typed, converted (with the short words held back before it),
// corrected for shift lag, or held back itself. Also confirms rejections and keeps the streaks.

#include "platform/Desktop.h"
#include "text/CheckedArithmetic.h"
#include "text/ScratchText.h"
#include "text/Text.h"
#include "typing/KeyTap.h"
#include "words/Detector.h"
#include "words/IgnoreList.h"
#include "words/LayoutMap.h"
#include "words/LetterScript.h"

namespace tessarok {

namespace {

/// Words of fewer Characters are never looked at.
constexpr std::size_t kShortestWord = 2;
/// Held-back words are judged as inside a run of words, whichever language it turns out to be.
constexpr std::int64_t kRetroStreak = 2;

bool equalInLowerCase(std::string_view a, std::string_view b) {
  ScratchText scratch;
  auto lowerA = scratch.string();
  auto lowerB = scratch.string();
  text::appendLowercased(a, lowerA);
  text::appendLowercased(b, lowerB);
  return lowerA == lowerB;
}

std::string converted(std::string_view word, const Detector::Decision& decision) {
  return LayoutMap::convert(text::withoutLast(word, decision.trim), decision.fromRu);
}

}  // namespace

/// What ended the word.
struct KeyTap::Boundary {
  /// The Character; absent when the word ends without one.
  std::optional<std::string_view> character;
  /// The key held back to be posted again after the replacement; null when the Character is typed
  /// as text.
  platform::Event* actionEvent;

  [[nodiscard]] bool endsLine() const { return character == "\n" || character == "\t"; }
  /// What the replacement types after the word.
  [[nodiscard]] std::string_view text() const {
    return actionEvent != nullptr ? std::string_view() : character.value_or(std::string_view());
  }
};

struct KeyTap::Conversion {
  Detector::Decision decision;
  /// The part that was converted, as typed.
  std::string_view core;
  /// The whole new word.
  std::string fixed;
};

/// The short words held back before a converted word, converted along with it.
struct KeyTap::RetroFix {
  std::size_t words = 0;
  std::size_t deleteCount = 0;
  std::string text;
};

bool KeyTap::evaluateAndFix(std::optional<std::string_view> boundaryCharacter,
                            platform::Event* actionEvent) {
  if (word_.untrackableWord) {
    resetWord();
    return false;
  }
  dbg([this] {
    return "eval count=" + std::to_string(text::count(word_.buffer)) +
           " ru=" + std::to_string(word_.ruStreak) + " en=" + std::to_string(word_.enStreak);
  });
  confirmRejection();
  const Boundary boundary{boundaryCharacter, actionEvent};
  if (text::count(word_.buffer) < kShortestWord) return leaveTooShort(boundary);
  const auto decision = Detector::decide(word_.buffer, word_.ruStreak, word_.enStreak);
  if (!decision) {
    dbg([] { return "  decision=leave"; });
    dbg([] { return "  decide=nil"; });
    const auto unshifted =
        shiftFixEnabled ? Detector::fixShiftLag(word_.buffer) : std::optional<std::string>();
    return unshifted ? applyShiftLag(*unshifted, boundary) : leaveAsTyped(boundary);
  }
  Conversion conversion{*decision, text::withoutLast(word_.buffer, decision->trim),
                        converted(word_.buffer, *decision)};
  if (shiftFixEnabled) {
    if (auto unshifted = Detector::fixShiftLag(conversion.fixed)) conversion.fixed = *unshifted;
  }
  conversion.fixed += text::last(word_.buffer, decision->trim);
  return applyConversion(conversion, boundary);
}

void KeyTap::confirmRejection() {
  if (!word_.pendingRejection || word_.buffer.empty()) return;
  const auto& rejection = *word_.pendingRejection;
  const double age = platform::desktop().clock().uptime() - rejection.at;
  const bool confirmed = age <= kRejectionWindow && equalInLowerCase(word_.buffer, rejection.typed);
  if (confirmed) {
    dbg([] { return "  rejection confirmed — learning"; });
    IgnoreList::recordRejection(text::lowercased(rejection.rejectionWord));
  }
  word_.pendingRejection.reset();
}

bool KeyTap::leaveTooShort(const Boundary& boundary) {
  ruStreakResetIfBoundary(boundary);
  rememberCommitted(word_.buffer, boundary);
  if (!word_.buffer.empty()) word_.lastAutoFix.reset();
  word_.pendingShorts.clear();
  return false;
}

bool KeyTap::applyConversion(const Conversion& conversion, const Boundary& boundary) {
  const auto& decision = conversion.decision;
  const auto& fixed = conversion.fixed;
  dbg([&] {
    return std::string("  decided fromRu=") + (decision.fromRu ? "true" : "false") +
           " conf=" + Detector::name(decision.confidence) +
           " trim=" + std::to_string(decision.trim);
  });
  if (fixed == word_.buffer) {
    rememberCommitted(word_.buffer, boundary);
    word_.lastAutoFix.reset();
    return false;
  }
  const auto retro = retroactiveFix(decision.fromRu);
  word_.pendingShorts.clear();
  countConverted(decision.fromRu, boundary);
  const auto switchToRussian = decision.confidence == Detector::Confidence::high
                                   ? russianByLetters(fixed)
                                   : std::optional<bool>();
  const auto deleteCount = checkedAdd(text::count(word_.buffer), retro.deleteCount);
  auto typed = retro.text + fixed;
  typed += boundary.text();
  if (!replace(deleteCount, typed, switchToRussian, boundary.actionEvent)) {
    resetWord();
    return false;
  }
  rememberConverted(conversion, boundary);
  return true;
}

void KeyTap::rememberConverted(const Conversion& conversion, const Boundary& boundary) {
  if (boundary.endsLine()) {
    word_.lastFix.reset();
    word_.lastAutoFix.reset();
    return;
  }
  auto& lastFix = word_.lastFix.renew();
  lastFix.text = conversion.fixed;
  lastFix.tail = boundary.text();
  auto& lastAutoFix = word_.lastAutoFix.renew();
  lastAutoFix.typed = word_.buffer;
  lastAutoFix.converted = conversion.fixed;
  lastAutoFix.rejectionWord = conversion.core;
}

KeyTap::RetroFix KeyTap::retroactiveFix(bool fromRu) const {
  RetroFix retro;
  for (const auto& word : word_.pendingShorts) {
    const auto decision = Detector::decide(word, kRetroStreak, kRetroStreak);
    if (!decision || decision->fromRu != fromRu) return {};
    auto fixed = converted(word, *decision);
    fixed += text::last(word, decision->trim);
    if (fixed == word) return {};
    // Each of them was followed by a space.
    retro.deleteCount = checkedAdd(retro.deleteCount, text::count(word) + 1);
    retro.text.append(fixed).push_back(' ');
    ++retro.words;
  }
  if (retro.words > 0) {
    dbg([&] { return "  retro-fix count=" + std::to_string(retro.words); });
  }
  return retro;
}

void KeyTap::countConverted(bool fromRu, const Boundary& boundary) {
  if (boundary.endsLine()) {
    word_.resetStreaks();
  } else if (fromRu) {
    word_.ruStreak = 0;
    word_.enStreak = checkedAdd<std::int64_t>(word_.enStreak, 1);
  } else {
    word_.ruStreak = checkedAdd<std::int64_t>(word_.ruStreak, 1);
    word_.enStreak = 0;
  }
}

bool KeyTap::applyShiftLag(const std::string& fixed, const Boundary& boundary) {
  const auto count = text::count(word_.buffer);
  dbg([count] { return "  shift-lag correction count=" + std::to_string(count); });
  if (!replace(count, fixed + std::string(boundary.text()), std::nullopt, boundary.actionEvent)) {
    resetWord();
    return false;
  }
  word_.lastFix.reset();
  if (!boundary.endsLine()) {
    auto& lastFix = word_.lastFix.renew();
    lastFix.text = fixed;
    lastFix.tail = boundary.text();
  }
  word_.lastAutoFix.reset();
  word_.pendingShorts.clear();
  if (boundary.endsLine()) {
    word_.resetStreaks();
  } else {
    keepStreaks();
  }
  return true;
}

bool KeyTap::leaveAsTyped(const Boundary& boundary) {
  rememberCommitted(word_.buffer, boundary);
  word_.lastAutoFix.reset();
  holdBackIfShort(boundary);
  keepStreaks();
  return false;
}

void KeyTap::holdBackIfShort(const Boundary& boundary) {
  auto& pending = word_.pendingShorts;
  const bool isShort = boundary.character == " " && (Detector::isShortRuCandidate(word_.buffer) ||
                                                     Detector::isShortEnCandidate(word_.buffer));
  if (!isShort) {
    pending.clear();
    return;
  }
  if (pending.size() >= WordState::kMaxPendingShorts) pending.erase(pending.begin());
  pending.push_back(word_.buffer);
  dbg([&] { return "  pending shorts count=" + std::to_string(pending.size()); });
}

void KeyTap::keepStreaks() {
  if (word_.enStreak >= 1 && hasOnlyLettersOf(word_.buffer, true)) {
    word_.ruStreak = 0;
  } else if (word_.ruStreak >= 1 && hasOnlyLettersOf(word_.buffer, false)) {
    word_.enStreak = 0;
  } else {
    word_.resetStreaks();
  }
}

void KeyTap::ruStreakResetIfBoundary(const Boundary& boundary) {
  if (boundary.endsLine()) word_.resetStreaks();
}

void KeyTap::rememberCommitted(std::string_view word, const Boundary& boundary) {
  if (!boundary.character) return;
  if (boundary.endsLine()) {
    word_.lastFix.reset();
    return;
  }
  if (!word.empty()) {
    auto& fix = word_.lastFix.renew();
    fix.text = word;
    fix.tail = *boundary.character;
    return;
  }
  if (!word_.lastFix) return;
  if (text::count(word_.lastFix->tail) >= WordState::kMaxTail) {
    word_.lastFix.reset();
    word_.lastAutoFix.reset();
    return;
  }
  word_.lastFix->tail += *boundary.character;
}

}  // namespace tessarok

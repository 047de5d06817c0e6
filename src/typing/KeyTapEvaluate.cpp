// The end of a word: left as typed, converted (with the short words held back before it),
// corrected for shift lag, or held back itself. Also confirms rejections.

#include "text/CheckedArithmetic.h"
#include "text/Text.h"
#include "typing/Boundary.h"
#include "typing/CommandWords.h"
#include "typing/KeyTap.h"
#include "typing/Uptime.h"
#include "words/Detector.h"
#include "words/IgnoreList.h"
#include "words/LayoutMap.h"
#include "words/Letters.h"

namespace tessarok {

namespace {

/// Words of fewer Characters are never looked at.
constexpr std::size_t kShortestWord = 2;
/// Held-back words are judged as inside a run of words, whichever language it turns out to be.
constexpr std::int64_t kRetroStreak = 2;

std::string converted(std::string_view word, const Detector::Decision& decision) {
  return LayoutMap::convert(text::withoutLast(word, decision.trim), decision.from());
}

}  // namespace

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

bool KeyTap::evaluateAndFix(const Boundary& boundary) {
  if (word_.untrackableWord()) {
    resetWord();
    return false;
  }
  const auto& buffer = word_.buffer();
  dbg([&] {
    return "eval count=" + std::to_string(text::count(buffer)) +
           " ru=" + std::to_string(word_.ruStreak()) + " en=" + std::to_string(word_.enStreak());
  });
  confirmRejection();
  if (text::count(buffer) < kShortestWord) {
    word_.leaveTooShort(boundary);
    return false;
  }
  auto decision = Detector::decide(buffer, word_.ruStreak(), word_.enStreak());
  if (decision && commandWords::mustStay(buffer, *decision, word_.ruStreak())) decision.reset();
  if (!decision) {
    dbg([] { return "  decision=leave"; });
    dbg([] { return "  decide=nil"; });
    const auto unshifted =
        shiftFixEnabled ? Detector::fixShiftLag(buffer) : std::optional<std::string>();
    if (unshifted) return applyShiftLag(*unshifted, boundary);
    leave(boundary);
    return false;
  }
  Conversion conversion{*decision, text::withoutLast(buffer, decision->trim),
                        converted(buffer, *decision)};
  if (shiftFixEnabled) {
    if (auto unshifted = Detector::fixShiftLag(conversion.fixed)) conversion.fixed = *unshifted;
  }
  conversion.fixed += text::last(buffer, decision->trim);
  return applyConversion(conversion, boundary);
}

void KeyTap::confirmRejection() {
  if (const auto rejected = word_.takeConfirmedRejection(uptime())) {
    dbg([] { return "  rejection confirmed — learning"; });
    IgnoreList::recordRejection(*rejected);
  }
}

bool KeyTap::applyConversion(const Conversion& conversion, const Boundary& boundary) {
  const auto& decision = conversion.decision;
  const auto& fixed = conversion.fixed;
  dbg([&] {
    return std::string("  decided fromRu=") +
           DiagnosticLog::spelled(decision.from() == Language::russian) +
           " conf=" + Detector::name(decision.confidence) +
           " trim=" + std::to_string(decision.trim);
  });
  if (fixed == word_.buffer()) {
    word_.leaveUnchanged(boundary);
    return false;
  }
  const auto retro = retroactiveFix(decision.to);
  word_.countConverted(decision.to, boundary);
  const auto switchTo = decision.confidence == Detector::Confidence::high
                            ? letters::layoutOf(fixed)
                            : std::optional<Language>();
  const auto deleteCount = checkedAdd(text::count(word_.buffer()), retro.deleteCount);
  auto typed = retro.text + fixed;
  typed += boundary.text();
  if (!replace(deleteCount, typed, switchTo, boundary.actionEvent)) {
    resetWord();
    return false;
  }
  word_.rememberConverted(fixed, conversion.core, boundary);
  return true;
}

KeyTap::RetroFix KeyTap::retroactiveFix(Language to) const {
  RetroFix retro;
  for (const auto& word : word_.pendingShorts()) {
    const auto decision = Detector::decide(word, kRetroStreak, kRetroStreak);
    if (!decision || decision->to != to) return {};
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

bool KeyTap::applyShiftLag(const std::string& fixed, const Boundary& boundary) {
  const auto count = text::count(word_.buffer());
  dbg([count] { return "  shift-lag correction count=" + std::to_string(count); });
  if (!replace(count, fixed + std::string(boundary.text()), std::nullopt, boundary.actionEvent)) {
    resetWord();
    return false;
  }
  word_.rememberUnshifted(fixed, boundary);
  return true;
}

void KeyTap::leave(const Boundary& boundary) {
  const bool isShort = boundary.character == " " && (Detector::isShortRuCandidate(word_.buffer()) ||
                                                     Detector::isShortEnCandidate(word_.buffer()));
  if (!isShort || commandWords::isCommand(word_.buffer())) return word_.leaveAsTyped(boundary);
  word_.holdBack(boundary);
  dbg([this] { return "  pending shorts count=" + std::to_string(word_.pendingShorts().size()); });
}

}  // namespace tessarok

#include "typing/WordState.h"

#include <utility>

#include "text/CheckedArithmetic.h"
#include "text/ScratchText.h"
#include "text/Text.h"
#include "words/Letters.h"

namespace tessarok {

namespace {

/// Room for a word of the greatest length, in bytes.
constexpr std::size_t kRoom = 4 * WordState::kMaxBuffer;

void removeLastCharacter(std::string& text) {
  text.resize(text::withoutLast(text, 1).size());
}

bool equalInLowerCase(std::string_view a, std::string_view b) {
  ScratchText scratch;
  auto lowerA = scratch.string();
  auto lowerB = scratch.string();
  text::appendLowercased(a, lowerA);
  text::appendLowercased(b, lowerB);
  return lowerA == lowerB;
}

}  // namespace

WordState::WordState() {
  buffer_.reserve(kRoom);
  pendingShorts_.reserve(kMaxPendingShorts);
  lastFix_.text.reserve(kRoom);
  lastFix_.tail.reserve(kRoom);
}

void WordState::reset() {
  untrackableWord_ = false;
  buffer_.clear();
  resetStreaks();
  pendingShorts_.clear();
  forgetLastFix();
  forgetLastAutoFix();
  forgetRejection();
}

void WordState::forget() {
  reset();
  untrackableWord_ = true;
}

void WordState::invalidate(ArmedRejection rejection) {
  const bool insideWord = !buffer_.empty() || untrackableWord_;
  const bool behindFix = !insideWord && lastFix() != nullptr && lastFix_.tail.empty();
  const bool touchesWord = insideWord || behindFix;
  const bool keeps = rejection == ArmedRejection::keepBetweenWords && !touchesWord;
  Rejection kept;
  if (keeps) std::swap(kept, pendingRejection_);
  reset();
  untrackableWord_ = touchesWord;
  if (keeps) std::swap(kept, pendingRejection_);
}

void WordState::append(std::string_view character) {
  if (buffer_.empty()) {
    if (lastFix() != nullptr && lastFix_.tail.empty()) buffer_ = lastFix_.text;
    forgetLastFix();
    forgetLastAutoFix();
  }
  if (!untrackableWord_) buffer_ += character;
  // A Character takes a byte at least, so most words need no count.
  if (buffer_.size() > kMaxBuffer && text::count(buffer_) > kMaxBuffer) forget();
}

bool WordState::erase(double now) {
  if (untrackableWord_) return false;
  if (!buffer_.empty()) {
    removeLastCharacter(buffer_);
    return false;
  }
  pendingShorts_.clear();
  if (lastFix() == nullptr) return false;
  removeLastCharacter(lastFix_.tail.empty() ? lastFix_.text : lastFix_.tail);
  if (lastFix() != nullptr) return false;
  forgetLastFix();
  if (lastAutoFix() == nullptr) return false;
  pendingRejection_.typed = lastAutoFix_.typed;
  pendingRejection_.rejectionWord = lastAutoFix_.rejectionWord;
  pendingRejection_.at = now;
  forgetLastAutoFix();
  return true;
}

std::optional<std::string> WordState::takeConfirmedRejection(double now) {
  if (pendingRejection() == nullptr || buffer_.empty()) return std::nullopt;
  std::optional<std::string> confirmed;
  if (now - pendingRejection_.at <= kRejectionWindow &&
      equalInLowerCase(buffer_, pendingRejection_.typed)) {
    confirmed = text::lowercased(pendingRejection_.rejectionWord);
  }
  forgetRejection();
  return confirmed;
}

void WordState::leaveTooShort(const Boundary& boundary) {
  if (boundary.endsLine()) resetStreaks();
  rememberCommitted(boundary);
  if (!buffer_.empty()) forgetLastAutoFix();
  pendingShorts_.clear();
}

void WordState::leaveUnchanged(const Boundary& boundary) {
  rememberCommitted(boundary);
  forgetLastAutoFix();
}

void WordState::leaveAsTyped(const Boundary& boundary) {
  leaveUnchanged(boundary);
  pendingShorts_.clear();
  keepStreaks();
}

void WordState::holdBack(const Boundary& boundary) {
  leaveUnchanged(boundary);
  if (pendingShorts_.size() >= kMaxPendingShorts) pendingShorts_.erase(pendingShorts_.begin());
  pendingShorts_.push_back(buffer_);
  keepStreaks();
}

void WordState::countConverted(Language to, const Boundary& boundary) {
  pendingShorts_.clear();
  if (boundary.endsLine()) {
    resetStreaks();
  } else {
    count(to);
  }
}

void WordState::rememberConverted(std::string_view fixed, std::string_view core,
                                  const Boundary& boundary) {
  forgetLastFix();
  forgetLastAutoFix();
  if (boundary.endsLine()) return;
  setLastFix(fixed, boundary.text());
  lastAutoFix_.typed = buffer_;
  lastAutoFix_.converted = fixed;
  lastAutoFix_.rejectionWord = core;
}

void WordState::rememberUnshifted(std::string_view fixed, const Boundary& boundary) {
  forgetLastFix();
  forgetLastAutoFix();
  pendingShorts_.clear();
  if (boundary.endsLine()) {
    resetStreaks();
    return;
  }
  setLastFix(fixed, boundary.text());
  keepStreaks();
}

void WordState::convertBuffer(std::string_view converted, std::optional<Language> language) {
  buffer_ = converted;
  pendingShorts_.clear();
  forgetLastFix();
  forgetLastAutoFix();
  if (language) count(*language);
}

void WordState::convertLastFix(std::string_view converted, std::optional<Language> language) {
  lastFix_.text = converted;
  forgetLastAutoFix();
  pendingShorts_.clear();
  if (language) count(*language);
}

void WordState::resetStreaks() {
  ruStreak_ = 0;
  enStreak_ = 0;
}

/// A word that stays continues the streak of its own language and ends every other; it never
/// starts one.
void WordState::keepStreaks() {
  if (enStreak_ >= 1 && letters::areAllOf(Language::english, buffer_)) {
    ruStreak_ = 0;
  } else if (ruStreak_ >= 1 && letters::areAllOf(Language::russian, buffer_)) {
    enStreak_ = 0;
  } else {
    resetStreaks();
  }
}

void WordState::count(Language language) {
  auto& grows = language == Language::russian ? ruStreak_ : enStreak_;
  auto& ends = language == Language::russian ? enStreak_ : ruStreak_;
  grows = checkedAdd<std::int64_t>(grows, 1);
  ends = 0;
}

void WordState::rememberCommitted(const Boundary& boundary) {
  if (!boundary.character) return;
  if (boundary.endsLine()) return forgetLastFix();
  if (!buffer_.empty()) return setLastFix(buffer_, *boundary.character);
  if (lastFix() == nullptr) return;
  if (text::count(lastFix_.tail) >= kMaxTail) {
    forgetLastFix();
    forgetLastAutoFix();
    return;
  }
  lastFix_.tail += *boundary.character;
}

void WordState::setLastFix(std::string_view text, std::string_view tail) {
  lastFix_.text = text;
  lastFix_.tail = tail;
}

void WordState::forgetLastFix() {
  lastFix_.text.clear();
  lastFix_.tail.clear();
}

}  // namespace tessarok

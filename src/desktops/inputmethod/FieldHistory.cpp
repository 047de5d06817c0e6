#include "desktops/inputmethod/FieldHistory.h"

#include <algorithm>
#include <utility>

#include "desktops/inputmethod/Scalars.h"
#include "text/Text.h"

namespace tessarok::inputmethod {

namespace {

/// As much as a few words put right together.
constexpr std::size_t kLongestTail = 256;
/// Programs may cut a report that is about to grow longer than this, in bytes, at its beginning.
constexpr std::size_t kWholeReport = 1900;
/// So many things may be on their way; of more the oldest are taken to have arrived.
constexpr std::size_t kMostStates = 256;

/// A window that moves along with the typing is of more than the word that is being typed.
bool hasSeveralWords(std::string_view text) {
  return text.substr(0, text.size() - 1).find_first_of(" \n\t") != std::string_view::npos;
}

/// The end of a text that is short enough to be kept for each state. Cut in bytes first: a report
/// may be long.
std::string tailOf(std::string_view text) {
  if (text.size() <= kLongestTail) return std::string(text);
  constexpr std::size_t kBytes = 8 * kLongestTail;
  if (text.size() > kBytes) text.remove_prefix(text.size() - kBytes);
  return std::string(text::last(text, kLongestTail));
}

}  // namespace

void FieldHistory::forget() {
  states_.assign(1, State{});
  arrival_.reset();
}

void FieldHistory::reportsEnded() {
  hasReport_ = false;
  states_.front() = std::move(states_.back());
  states_.resize(1);
  states_.front().length.reset();
}

void FieldHistory::restart(std::string_view before) {
  states_.assign(1, State{});
  arrive(0, before);
}

void FieldHistory::add(State state) {
  // Without reports nothing ever shows what has arrived.
  if (!hasReport_ && states_.size() > 1) states_.pop_front();
  states_.push_back(std::move(state));
  if (states_.size() > kMostStates) states_.pop_front();
}

void FieldHistory::typed(std::string_view text, double now) {
  const auto& last = states_.back();
  State next{.tail = tailOf(last.tail + std::string(text)),
             .length = last.length,
             .effect = Effect::text,
             .sentAt = now};
  if (next.length) *next.length += scalars(text);
  add(std::move(next));
}

void FieldHistory::erased(std::size_t characters, double now) {
  const auto& last = states_.back();
  const bool isWhole = !isWindowed_ && last.length == scalars(last.tail);
  if (!isWhole && text::count(last.tail) < characters) {
    return add({.tail = {}, .length = {}, .effect = Effect::erasure, .sentAt = now});
  }
  State next{.tail = std::string(text::withoutLast(last.tail, characters)),
             .length = last.length,
             .effect = Effect::erasure,
             .sentAt = now};
  if (next.length) *next.length -= scalars(last.tail) - scalars(next.tail);
  add(std::move(next));
}

void FieldHistory::unknownKey(double now) {
  add({.tail = {}, .length = {}, .effect = Effect::unknown, .sentAt = now});
}

bool FieldHistory::fits(std::size_t index, std::string_view before) const {
  const auto& state = states_[index];
  const bool isWhole = before.size() < kWholeReport;
  return (!isWhole || state.length == scalars(before)) && before.ends_with(state.tail);
}

bool FieldHistory::fitsAsWindow(std::size_t index, std::string_view before) const {
  // What nothing was sent for is told as before.
  if (index == 0 || before.empty()) return false;
  const auto& state = states_[index];
  if (isWindowed_ && state.tail.empty()) return false;
  if (isWindowed_) return state.tail.ends_with(before) || before.ends_with(state.tail);
  return state.effect == Effect::text && hasSeveralWords(before) && state.tail.ends_with(before);
}

FieldHistory::Verdict FieldHistory::reported(std::string_view before) {
  hasReport_ = true;
  arrival_.reset();
  std::size_t index = 0;
  for (; index < states_.size() && states_[index].length; ++index) {
    if (!fits(index, before)) {
      if (!fitsAsWindow(index, before)) continue;
      isWindowed_ = true;
    }
    arrive(index, before);
    return Verdict::fits;
  }
  if (index < states_.size()) return reportedBehindUnknown(index, before);
  if (states_.size() > 1) return Verdict::unclear;
  restart(before);
  return Verdict::elsewhere;
}

FieldHistory::Verdict FieldHistory::reportedBehindUnknown(std::size_t unknown,
                                                          std::string_view before) {
  std::optional<std::size_t> found;
  std::optional<std::size_t> nothingKnown;
  for (std::size_t index = unknown; index < states_.size(); ++index) {
    const auto& tail = states_[index].tail;
    if (tail.empty() && !nothingKnown) nothingKnown = index;
    if (index > unknown && tail.empty()) break;
    if (tail.empty() || !before.ends_with(tail)) continue;
    // "aa" may be one letter behind another one, or both.
    if (found && states_[*found].tail != tail) return Verdict::unclear;
    if (!found) found = index;
  }
  if (!found && !nothingKnown) return Verdict::unclear;
  const auto reached = found ? *found : *nothingKnown;
  resolve(found ? unknown : reached, reached, before);
  arrive(reached, before);
  return Verdict::fits;
}

void FieldHistory::resolve(std::size_t unknown, std::size_t index, std::string_view before) {
  const auto shared = std::string(before.substr(0, before.size() - states_[index].tail.size()));
  const auto length = scalars(shared);
  for (auto i = unknown; i < states_.size(); ++i) {
    auto& state = states_[i];
    if (i > unknown && state.tail.empty()) break;
    state.length = length + scalars(state.tail);
    state.tail = tailOf(shared + state.tail);
  }
}

void FieldHistory::arrive(std::size_t index, std::string_view before) {
  hasReport_ = true;
  states_.erase(states_.begin(), states_.begin() + static_cast<std::ptrdiff_t>(index));
  auto& state = states_.front();
  if (index > 0) arrival_ = Arrival{state.effect, state.sentAt};
  state.tail = tailOf(before);
  state.length = scalars(before);
}

std::optional<FieldHistory::Effect> FieldHistory::awaited() const {
  if (states_.size() == 1) return std::nullopt;
  return states_.back().effect;
}

bool FieldHistory::isShown() const {
  return hasReport_ && states_.size() == 1 && states_.front().length.has_value();
}

std::optional<std::string_view> FieldHistory::last(std::size_t characters) const {
  const auto slice = text::last(states_.back().tail, characters);
  if (text::count(slice) < characters) return std::nullopt;
  return slice;
}

std::optional<std::ptrdiff_t> FieldHistory::lengthWithout(std::size_t characters) const {
  const auto erased = last(characters);
  const auto length = states_.back().length;
  // As many bytes as a report that is not cut may have at least.
  if (!isShown() || isWindowed_ || !erased || !length ||
      *length * 2 >= std::ptrdiff_t{kWholeReport}) {
    return std::nullopt;
  }
  return *length - scalars(*erased);
}

}  // namespace tessarok::inputmethod

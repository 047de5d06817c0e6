#include "typing/WordState.h"

namespace tessarok {

namespace {

/// Room for a word of the greatest length, in bytes.
constexpr std::size_t kRoom = 4 * WordState::kMaxBuffer;

}  // namespace

WordState::WordState() {
  buffer.reserve(kRoom);
  pendingShorts.reserve(kMaxPendingShorts);
  lastFix->text.reserve(kRoom);
  lastFix->tail.reserve(kRoom);
}

void WordState::reset() {
  untrackableWord = false;
  buffer.clear();
  resetStreaks();
  pendingShorts.clear();
  lastFix.reset();
  lastAutoFix.reset();
  pendingRejection.reset();
}

void WordState::resetStreaks() {
  ruStreak = 0;
  enStreak = 0;
}

}  // namespace tessarok

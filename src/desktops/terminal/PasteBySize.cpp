#include "desktops/terminal/PasteBySize.h"

namespace tessarok::terminal {

namespace {

/// Bytes that come together only in a paste.
constexpr std::size_t kPasteSize = 256;
/// The same for programs that have not asked for brackets, which a terminal would put around a
/// paste else: three seconds of the fastest typing. Keys that had to wait may come together as
/// well; so long ago, in seconds, must they have been read last without a wait.
constexpr std::size_t kShortPasteSize = 64;
constexpr double kWaitMemory = 5;
/// What a person types at once is shorter, keys that the system has held up included.
constexpr std::size_t kTypedSize = 32;
/// Seconds in which the next part of a large paste comes.
constexpr double kGap = 0.1;

}  // namespace

bool PasteBySize::mayBegin(std::size_t count, double uptime) const {
  return count > kTypedSize && count < kPasteSize && !continues(uptime);
}

bool PasteBySize::read(std::size_t count, bool wantsBrackets, double uptime) {
  if (count == 0) return isPaste_;
  isPaste_ = continues(uptime) || begins(count, wantsBrackets, uptime);
  // A small part is the last one. Keys behind it come one by one, and would go on for as long as
  // each is pressed soon after the one before, as a key that is held down is.
  mayContinue_ = isPaste_ && count > kTypedSize;
  return isPaste_;
}

void PasteBySize::noteServed(double uptime) {
  if (mayContinue_) until_ = uptime + kGap;
}

bool PasteBySize::begins(std::size_t count, bool wantsBrackets, double uptime) const {
  if (count >= kPasteSize) return true;
  if (count < kShortPasteSize || wantsBrackets) return false;
  return !waitedAt_ || uptime - *waitedAt_ > kWaitMemory;
}

}  // namespace tessarok::terminal

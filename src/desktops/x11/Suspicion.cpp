#include "desktops/x11/Suspicion.h"

namespace tessarok::x11 {

namespace {

/// Looks after the first. Several short waits instead of a long one: on a machine that is only slow
/// the watchdog is slow as well.
constexpr int kFewestLooks = 3;
/// Looks after which a worker that does a little all the time is given up: five seconds.
constexpr int kMostLooks = 50;
/// Nanoseconds of a processor. On an idle machine a busy worker has had them long before it has
/// been looked at often enough; on one with four times as much to do as it can, about then.
constexpr long long kMostWork = 70'000'000;

}  // namespace

bool Suspicion::isConfirmedBy(const Look& look) {
  if (looks_ > 0 && isIdle(look)) ++idle_;
  if (looks_ == 0) first_ = look.worker;
  last_ = look.worker;
  if (looks_++ < kFewestLooks) return false;
  return idle_ >= kFewestLooks || isBusy() || (looks_ > kMostLooks && look.hasServerAnswered);
}

bool Suspicion::isIdle(const Look& look) const {
  if (!look.worker || !last_) return true;
  return look.hasServerAnswered && look.worker->isAsleep && look.worker->ran == last_->ran &&
         look.worker->queued == last_->queued;
}

bool Suspicion::isBusy() const {
  return first_ && last_ && last_->ran - first_->ran >= kMostWork;
}

}  // namespace tessarok::x11

#include "desktops/virtual/VirtualRunLoop.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace tessarok::virtualdesktop {

class VirtualRunLoop::RepeatingTimer final : public platform::Timer {
 public:
  RepeatingTimer(VirtualRunLoop& loop, std::uint64_t number) : loop_(loop), number_(number) {}
  ~RepeatingTimer() override { loop_.cancel(number_); }

 private:
  VirtualRunLoop& loop_;
  std::uint64_t number_;
};

void VirtualRunLoop::after(double seconds, std::function<void()> work) {
  add({now_ + seconds, false, 0, 0, std::move(work)});
}

std::unique_ptr<platform::Timer> VirtualRunLoop::repeating(double interval, double,
                                                           std::function<void()> work) {
  const auto number = add({now_ + interval, true, 0, interval, std::move(work)});
  return std::make_unique<RepeatingTimer>(*this, number);
}

void VirtualRunLoop::runQueue() {
  while (true) {
    if (onTurn) onTurn();
    const auto work = queue_.take();
    if (!work) return;
    work();
  }
}

void VirtualRunLoop::advance(double seconds) {
  const double end = now_ + seconds;
  for (auto next = nextDue(); next != pending_.end() && next->due <= end; next = nextDue()) {
    runFirst(next);
    runQueue();
  }
  now_ = end;
}

std::vector<VirtualRunLoop::Pending>::iterator VirtualRunLoop::nextDue() {
  return std::min_element(pending_.begin(), pending_.end(), [](const Pending& a, const Pending& b) {
    return std::tuple(a.due, !a.isTimer, a.number) < std::tuple(b.due, !b.isTimer, b.number);
  });
}

void VirtualRunLoop::runFirst(std::vector<Pending>::iterator next) {
  now_ = std::max(now_, next->due);
  // The work may change the list, so it leaves it first.
  if (next->isTimer) {
    next->due += next->interval;
    const auto work = next->work;
    work();
    return;
  }
  const auto work = std::move(next->work);
  pending_.erase(next);
  work();
}

std::uint64_t VirtualRunLoop::add(Pending pending) {
  pending.number = ++lastNumber_;
  pending_.push_back(std::move(pending));
  return lastNumber_;
}

void VirtualRunLoop::cancel(std::uint64_t number) {
  std::erase_if(pending_, [number](const Pending& pending) { return pending.number == number; });
}

}  // namespace tessarok::virtualdesktop

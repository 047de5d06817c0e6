#include "desktops/posix/PollLoop.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <fcntl.h>
#include <system_error>
#include <tuple>
#include <unistd.h>
#include <utility>

#include "desktops/posix/DescriptorWait.h"

namespace tessarok::posix {

class PollLoop::RepeatingTimer final : public platform::Timer {
 public:
  RepeatingTimer(PollLoop& loop, std::uint64_t number) : loop_(loop), number_(number) {}
  ~RepeatingTimer() override { loop_.cancel(number_); }

 private:
  PollLoop& loop_;
  std::uint64_t number_;
};

PollLoop::PollLoop(platform::Clock& clock) : clock_(clock) {
  int ends[2];
  if (::pipe(ends) != 0) return;
  wakeReader_ = FileDescriptor(ends[0]);
  wakeWriter_ = FileDescriptor(ends[1]);
  for (const int end : ends) {
    static_cast<void>(::fcntl(end, F_SETFD, FD_CLOEXEC));
    static_cast<void>(::fcntl(end, F_SETFL, O_NONBLOCK));
  }
}

void PollLoop::async(std::function<void()> work) {
  queue_.add(std::move(work));
  if (std::this_thread::get_id() == mainThread_ || !wakeWriter_.isOpen()) return;
  // A full pipe wakes the loop as well.
  static_cast<void>(!::write(wakeWriter_.get(), "", 1));
}

void PollLoop::endWake() const {
  char bytes[64];
  while (::read(wakeReader_.get(), bytes, sizeof bytes) > 0) {
  }
}

void PollLoop::after(double seconds, std::function<void()> work) {
  schedule({clock_.uptime() + seconds, 0, 0, std::move(work)});
}

std::unique_ptr<platform::Timer> PollLoop::repeating(double interval, double,
                                                     std::function<void()> work) {
  const auto number = schedule({clock_.uptime() + interval, 0, interval, std::move(work)});
  return std::make_unique<RepeatingTimer>(*this, number);
}

void PollLoop::add(platform::RunLoopSource& source) {
  if (auto* served = dynamic_cast<PollSource*>(&source)) sources_.push_back(served);
}

void PollLoop::remove(platform::RunLoopSource& source) {
  std::erase(sources_, dynamic_cast<PollSource*>(&source));
}

void PollLoop::run() {
  while (!stopped_) {
    runQueue();
    if (stopped_) return;
    serveDescriptors();
    runDue();
  }
}

void PollLoop::runQueue() {
  while (const auto work = queue_.take())
    work();
}

std::uint64_t PollLoop::schedule(Pending pending) {
  pending.number = ++lastNumber_;
  pending_.push_back(std::move(pending));
  return lastNumber_;
}

void PollLoop::cancel(std::uint64_t number) {
  std::erase_if(pending_, [number](const Pending& pending) { return pending.number == number; });
}

std::vector<PollLoop::Pending>::iterator PollLoop::nextDue() {
  return std::min_element(pending_.begin(), pending_.end(), [](const Pending& a, const Pending& b) {
    return std::tuple(a.due, a.number) < std::tuple(b.due, b.number);
  });
}

void PollLoop::runDue() {
  const double now = clock_.uptime();
  for (auto next = nextDue(); next != pending_.end() && next->due <= now && !stopped_;
       next = nextDue()) {
    // The work may change the list, so it leaves it first.
    const auto work = next->interval > 0 ? next->work : std::move(next->work);
    if (next->interval > 0) {
      next->due += next->interval;
      // After a sleep of the machine the missed calls are not made up for.
      if (next->due <= now) next->due = now + next->interval;
    } else {
      pending_.erase(next);
    }
    work();
    runQueue();
  }
}

int PollLoop::millisecondsToWait() {
  if (!queue_.isEmpty()) return 0;
  const auto next = nextDue();
  if (next == pending_.end()) return -1;
  constexpr double kLongest = 3600;
  const double seconds = std::clamp(next->due - clock_.uptime(), 0.0, kLongest);
  return static_cast<int>(std::ceil(seconds * 1000));
}

void PollLoop::serveDescriptors() {
  turn_ = sources_;
  descriptors_.clear();
  bool mayWait = true;
  for (const auto* source : turn_) {
    const auto events = source->events();
    descriptors_.push_back({events != 0 ? source->descriptor() : -1, events, 0});
    if (source->isReady()) mayWait = false;
  }
  if (wakeReader_.isOpen()) descriptors_.push_back({wakeReader_.get(), POLLIN, 0});
  const int timeout = mayWait ? millisecondsToWait() : 0;
  if (timeout != 0 && onTurn) onTurn(true);
  const int count = waitFor(descriptors_, timeout);
  const int error = errno;
  if (onTurn) onTurn(false);
  if (count < 0 && error != EINTR) throw std::system_error(error, std::generic_category(), "poll");
  if (count < 0 || (count == 0 && mayWait)) return;
  if (wakeReader_.isOpen() && descriptors_.back().revents != 0) endWake();
  for (std::size_t i = 0; i < turn_.size() && !stopped_; ++i) {
    if (!isServed(turn_[i])) continue;
    if (descriptors_[i].revents == 0 && !turn_[i]->isReady()) continue;
    turn_[i]->ready(descriptors_[i].revents);
    runQueue();
  }
}

bool PollLoop::isServed(const PollSource* source) const {
  return std::find(sources_.begin(), sources_.end(), source) != sources_.end();
}

}  // namespace tessarok::posix

#include "desktops/fcitx5/FcitxRunLoop.h"

#include <ctime>
#include <poll.h>
#include <utility>

namespace tessarok::fcitx5 {

namespace {

using fcitx::IOEventFlag;
using fcitx::IOEventFlags;

/// With 0 the loop would take the liberty of a quarter of a second.
constexpr std::uint64_t kExactly = 1;

std::uint64_t microseconds(double seconds) {
  return seconds <= 0 ? 0 : static_cast<std::uint64_t>(seconds * 1e6);
}

std::uint64_t in(double seconds) {
  return fcitx::now(CLOCK_MONOTONIC) + microseconds(seconds);
}

IOEventFlags flagsOf(short events) {
  IOEventFlags flags;
  if ((events & POLLIN) != 0) flags |= IOEventFlag::In;
  if ((events & POLLOUT) != 0) flags |= IOEventFlag::Out;
  return flags;
}

short eventsOf(IOEventFlags flags) {
  int events = 0;
  if (flags.test(IOEventFlag::In)) events |= POLLIN;
  if (flags.test(IOEventFlag::Out)) events |= POLLOUT;
  if (flags.test(IOEventFlag::Err)) events |= POLLERR;
  if (flags.test(IOEventFlag::Hup)) events |= POLLHUP;
  return static_cast<short>(events);
}

}  // namespace

class FcitxRunLoop::RepeatingTimer final : public platform::Timer {
 public:
  RepeatingTimer(FcitxRunLoop& loop, double interval, double tolerance, std::function<void()> work)
      : loop_(loop), work_(std::make_shared<std::function<void()>>(std::move(work))) {
    source_ =
        loop_.loop_.addTimeEvent(CLOCK_MONOTONIC, in(interval), microseconds(tolerance),
                                 [&guard = loop_.guard_, interval, weak = std::weak_ptr(work_)](
                                     fcitx::EventSourceTime* source, std::uint64_t) {
                                   source->setNextInterval(microseconds(interval));
                                   source->setOneShot();
                                   // The work may end the timer, and the work with it.
                                   if (const auto kept = weak.lock()) guard(*kept);
                                   return true;
                                 });
  }
  ~RepeatingTimer() override {
    source_->setEnabled(false);
    loop_.throwAway(std::move(source_));
  }

 private:
  FcitxRunLoop& loop_;
  std::shared_ptr<std::function<void()>> work_;
  std::unique_ptr<fcitx::EventSourceTime> source_;
};

FcitxRunLoop::FcitxRunLoop(fcitx::EventLoop& loop, inputmethod::Guard& guard)
    : loop_(loop), guard_(guard) {
  turn_ = loop_.addDeferEvent([this](fcitx::EventSource*) {
    guard_([this] {
      done_.clear();
      runQueue();
    });
    return true;
  });
  turn_->setEnabled(false);
  dispatcher_.attach(&loop_);
}

FcitxRunLoop::~FcitxRunLoop() = default;

void FcitxRunLoop::async(std::function<void()> work) {
  queue_.add(std::move(work));
  if (std::this_thread::get_id() == mainThread_) return turn_->setOneShot();
  // The loop's own sources are the main thread's.
  dispatcher_.schedule([this] { turn_->setOneShot(); });
}

void FcitxRunLoop::after(double seconds, std::function<void()> work) {
  const auto number = ++lastNumber_;
  delayed_[number] = loop_.addTimeEvent(
      CLOCK_MONOTONIC, in(seconds), kExactly,
      [this, number, work = std::move(work)](fcitx::EventSourceTime*, std::uint64_t) {
        throwAway(std::move(delayed_.extract(number).mapped()));
        guard_(work);
        return true;
      });
}

std::unique_ptr<platform::Timer> FcitxRunLoop::repeating(double interval, double tolerance,
                                                         std::function<void()> work) {
  return std::make_unique<RepeatingTimer>(*this, interval, tolerance, std::move(work));
}

void FcitxRunLoop::add(platform::RunLoopSource& source) {
  auto* served = dynamic_cast<posix::PollSource*>(&source);
  if (served == nullptr) return;
  sources_[served] =
      loop_.addIOEvent(served->descriptor(), flagsOf(served->events()),
                       [this, served](fcitx::EventSourceIO* event, int, IOEventFlags flags) {
                         guard_([&] { serve(served, flags); });
                         // Nobody reads any more what comes, and it would be told for ever.
                         if (guard_.hasFailed()) event->setEnabled(false);
                         return true;
                       });
}

void FcitxRunLoop::serve(posix::PollSource* source, IOEventFlags flags) {
  source->ready(eventsOf(flags));
  const auto found = sources_.find(source);
  if (found != sources_.end()) found->second->setEvents(flagsOf(source->events()));
}

void FcitxRunLoop::remove(platform::RunLoopSource& source) {
  const auto found = sources_.find(dynamic_cast<posix::PollSource*>(&source));
  if (found == sources_.end()) return;
  found->second->setEnabled(false);
  throwAway(std::move(found->second));
  sources_.erase(found);
}

void FcitxRunLoop::throwAway(std::unique_ptr<fcitx::EventSource> source) {
  done_.push_back(std::move(source));
  turn_->setOneShot();
}

void FcitxRunLoop::runQueue() {
  while (const auto work = queue_.take())
    work();
}

}  // namespace tessarok::fcitx5

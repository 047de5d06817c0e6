#include "desktops/x11/LifeLine.h"

#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <sys/timerfd.h>
#include <utility>

#include "desktops/x11/Watchdog.h"

namespace tessarok::x11 {

LifeLine::LifeLine(posix::FileDescriptor line, posix::FileDescriptor alarm)
    : line_(std::move(line)),
      alarm_(std::move(alarm)),
      source_(
          line_.get(), [this] { return lost_ ? short{POLLIN} : short{0}; },
          // The watchdog says nothing, so this is its end.
          [this](short) { hangUp(); }) {}

LifeLine::~LifeLine() {
  if (loop_ == nullptr) return;
  letGo();
  loop_->remove(source_);
}

void LifeLine::watch(posix::PollLoop& loop, std::function<void()> lost) {
  loop_ = &loop;
  lost_ = std::move(lost);
  loop_->add(source_);
  loop_->async([this] { static_cast<void>(send(Watchdog::kStarted)); });
}

bool LifeLine::send(char message) const {
  // A watchdog that was stopped does not read, and does no harm.
  return ::send(line_.get(), &message, 1, MSG_NOSIGNAL | MSG_DONTWAIT) == 1 || errno == EAGAIN;
}

void LifeLine::setAlarm(long milliseconds) const {
  itimerspec time{};
  time.it_value.tv_nsec = milliseconds * 1'000'000;
  ::timerfd_settime(alarm_.get(), 0, &time, nullptr);
}

bool LifeLine::hold() {
  if (!send(Watchdog::kHeld)) return false;
  setAlarm(Watchdog::kAlarmMilliseconds);
  loop_->onTurn = [this](bool waits) { setAlarm(waits ? 0 : Watchdog::kAlarmMilliseconds); };
  return true;
}

void LifeLine::letGo() {
  loop_->onTurn = nullptr;
  setAlarm(0);
  static_cast<void>(send(Watchdog::kFree));
}

void LifeLine::wind() const {
  if (loop_ != nullptr && loop_->onTurn) setAlarm(Watchdog::kAlarmMilliseconds);
}

void LifeLine::hangUp() {
  // Once, and what is called may destroy this object.
  const auto lost = std::exchange(lost_, {});
  if (lost) lost();
}

}  // namespace tessarok::x11

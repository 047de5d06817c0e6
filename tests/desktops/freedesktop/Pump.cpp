#include "tests/desktops/freedesktop/Pump.h"

#include <algorithm>
#include <chrono>
#include <poll.h>

namespace tessarok::testing {

namespace {

constexpr std::chrono::seconds kDeadline{20};
/// So that calls without an answer, which make no descriptor ready, are seen to time out.
constexpr int kLongestTurn = 100;

}  // namespace

void Pump::add(platform::RunLoopSource& source) {
  if (auto* served = dynamic_cast<posix::PollSource*>(&source)) sources_.push_back(served);
}

void Pump::remove(platform::RunLoopSource& source) {
  std::erase(sources_, dynamic_cast<posix::PollSource*>(&source));
}

bool Pump::until(const std::function<bool()>& done) {
  const auto deadline = std::chrono::steady_clock::now() + kDeadline;
  loop_.runQueue();
  while (!done()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    serve(kLongestTurn);
  }
  return true;
}

void Pump::serve(int milliseconds) {
  const auto turn = sources_;
  std::vector<pollfd> descriptors;
  for (const auto* source : turn) {
    const auto events = source->events();
    descriptors.push_back({events != 0 ? source->descriptor() : -1, events, 0});
  }
  ::poll(descriptors.data(), descriptors.size(), milliseconds);
  for (std::size_t i = 0; i < turn.size(); ++i) {
    const bool served = std::find(sources_.begin(), sources_.end(), turn[i]) != sources_.end();
    if (served && turn[i]->events() != 0) turn[i]->ready(descriptors[i].revents);
    loop_.runQueue();
  }
}

}  // namespace tessarok::testing

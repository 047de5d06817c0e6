#include "platform/terminal/TerminalEventTaps.h"

#include <utility>

namespace tessarok::terminal {

namespace {

/// Keys come from the terminal desktop's own loop, so a tap needs nothing of a run loop.
class TapSource final : public platform::RunLoopSource {};

}  // namespace

class TerminalEventTaps::Proxy final : public platform::EventTapProxy {
 public:
  explicit Proxy(TerminalEventTaps& taps) : taps_(taps) {}
  void post(const platform::Event& event) override {
    taps_.posted_.push_back(static_cast<const TerminalEvent&>(event));
  }

 private:
  TerminalEventTaps& taps_;
};

class TerminalEventTaps::Tap final : public platform::EventTap {
 public:
  Tap(TerminalEventTaps& taps, platform::EventTapCallback callback, void* userData)
      : taps_(taps), callback_(callback), userData_(userData) {}
  ~Tap() override { leave(); }

  bool isEnabled() const override { return enabled_; }
  void enable(bool enabled) override { enabled_ = enabled; }
  void invalidate() override {
    enabled_ = false;
    leave();
  }
  std::unique_ptr<platform::RunLoopSource> createRunLoopSource(int) override {
    return std::make_unique<TapSource>();
  }
  platform::Event* call(TerminalEvent& event) {
    return callback_(taps_.proxy_.get(), event.type, &event, userData_);
  }

 private:
  void leave() {
    if (taps_.tap_ == this) taps_.tap_ = nullptr;
  }

  TerminalEventTaps& taps_;
  platform::EventTapCallback callback_;
  void* userData_;
  bool enabled_ = false;
};

TerminalEventTaps::TerminalEventTaps() : proxy_(std::make_unique<Proxy>(*this)) {}

TerminalEventTaps::~TerminalEventTaps() = default;

std::unique_ptr<platform::EventTap> TerminalEventTaps::create(std::uint64_t,
                                                              platform::EventTapCallback callback,
                                                              void* userData) {
  auto tap = std::make_unique<Tap>(*this, callback, userData);
  tap_ = tap.get();
  return tap;
}

void TerminalEventTaps::press(TerminalEvent& event) {
  send(event);
  event.type = platform::EventType::keyUp;
  send(event);
}

void TerminalEventTaps::send(TerminalEvent& event) {
  route(event);
  // The tap may post more while it sees what it posted.
  for (std::size_t i = 0; i < posted_.size(); ++i) {
    TerminalEvent posted(posted_[i]);
    route(posted);
  }
  posted_.clear();
}

void TerminalEventTaps::route(TerminalEvent& event) {
  const bool reachesTap = tap_ != nullptr && tap_->isEnabled();
  if (reachesTap && tap_->call(event) == nullptr) return;
  if (deliver_) deliver_(event);
}

}  // namespace tessarok::terminal

#include "platform/fcitx5/FcitxEventTaps.h"

#include <utility>

namespace tessarok::fcitx5 {

namespace {

/// Keys come as events of Fcitx, so a tap needs nothing of a run loop.
class TapSource final : public platform::RunLoopSource {};

}  // namespace

class FcitxEventTaps::Proxy final : public platform::EventTapProxy {
 public:
  explicit Proxy(FcitxEventTaps& taps) : taps_(taps) {}
  void post(const platform::Event& event) override {
    taps_.posted_.push_back(static_cast<const FcitxEvent&>(event));
  }

 private:
  FcitxEventTaps& taps_;
};

class FcitxEventTaps::Tap final : public platform::EventTap {
 public:
  Tap(FcitxEventTaps& taps, platform::EventTapCallback callback, void* userData)
      : taps_(taps), callback_(callback), userData_(userData) {}
  ~Tap() override { leave(); }

  bool isEnabled() const override { return isEnabled_; }
  void enable(bool enabled) override { isEnabled_ = enabled; }
  void invalidate() override {
    isEnabled_ = false;
    leave();
  }
  std::unique_ptr<platform::RunLoopSource> createRunLoopSource(int) override {
    return std::make_unique<TapSource>();
  }
  platform::Event* call(FcitxEvent& event) {
    return callback_(taps_.proxy_.get(), event.type, &event, userData_);
  }

 private:
  void leave() {
    if (taps_.tap_ == this) taps_.tap_ = nullptr;
  }

  FcitxEventTaps& taps_;
  platform::EventTapCallback callback_;
  void* userData_;
  bool isEnabled_ = false;
};

FcitxEventTaps::FcitxEventTaps() : proxy_(std::make_unique<Proxy>(*this)) {}

FcitxEventTaps::~FcitxEventTaps() = default;

std::unique_ptr<platform::EventTap> FcitxEventTaps::create(std::uint64_t,
                                                           platform::EventTapCallback callback,
                                                           void* userData) {
  auto tap = std::make_unique<Tap>(*this, callback, userData);
  tap_ = tap.get();
  return tap;
}

bool FcitxEventTaps::isOpen() const {
  return tap_ != nullptr && tap_->isEnabled();
}

bool FcitxEventTaps::send(FcitxEvent& event) {
  return !isOpen() || tap_->call(event) != nullptr;
}

std::vector<FcitxEvent> FcitxEventTaps::takePosted() {
  std::vector<FcitxEvent> passed;
  // The tap sees its own events too, and may post more meanwhile.
  for (std::size_t i = 0; i < posted_.size(); ++i) {
    FcitxEvent posted(posted_[i]);
    if (send(posted)) passed.push_back(posted);
  }
  posted_.clear();
  return passed;
}

}  // namespace tessarok::fcitx5

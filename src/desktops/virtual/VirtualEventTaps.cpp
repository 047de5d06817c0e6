#include "desktops/virtual/VirtualEventTaps.h"

#include <utility>

namespace tessarok::virtualdesktop {

namespace {

using platform::EventType;

class TapSource final : public platform::RunLoopSource {};

bool isKey(EventType type) {
  return type == EventType::keyDown || type == EventType::keyUp;
}

}  // namespace

class VirtualEventTaps::Proxy final : public platform::EventTapProxy {
 public:
  explicit Proxy(VirtualEventTaps& taps) : taps_(taps) {}

  void post(const platform::Event& event) override {
    VirtualEvent posted(static_cast<const VirtualEvent&>(event));
    posted.posted = true;
    if (taps_.onPosted) taps_.onPosted(posted);
    taps_.posted_.push_back(posted);
  }

 private:
  VirtualEventTaps& taps_;
};

class VirtualEventTaps::Tap final : public platform::EventTap {
 public:
  Tap(VirtualEventTaps& taps, platform::EventTapCallback callback, void* userData)
      : taps_(taps), callback_(callback), userData_(userData) {}
  ~Tap() override {
    if (taps_.tap_ == this) taps_.tap_ = nullptr;
  }

  bool isEnabled() const override { return enabled_; }
  // Without permission the system does not let a tap be enabled.
  void enable(bool enabled) override { enabled_ = enabled && taps_.trusted_; }
  void invalidate() override {
    enabled_ = false;
    if (taps_.tap_ == this) taps_.tap_ = nullptr;
  }
  std::unique_ptr<platform::RunLoopSource> createRunLoopSource(int) override {
    return std::make_unique<TapSource>();
  }

  platform::Event* call(EventType type, platform::Event* event) {
    return callback_(taps_.proxy_.get(), type, event, userData_);
  }

  bool deaf = false;

 private:
  VirtualEventTaps& taps_;
  platform::EventTapCallback callback_;
  void* userData_;
  bool enabled_ = false;
};

VirtualEventTaps::VirtualEventTaps(Delivery deliver)
    : deliver_(std::move(deliver)), proxy_(std::make_unique<Proxy>(*this)) {}

VirtualEventTaps::~VirtualEventTaps() = default;

std::unique_ptr<platform::EventTap> VirtualEventTaps::create(std::uint64_t,
                                                             platform::EventTapCallback callback,
                                                             void* userData) {
  if (!trusted_) return nullptr;
  auto tap = std::make_unique<Tap>(*this, callback, userData);
  tap_ = tap.get();
  return tap;
}

void VirtualEventTaps::send(VirtualEvent& event) {
  route(event);
  while (!posted_.empty()) {
    VirtualEvent posted(posted_.front());
    posted_.pop_front();
    route(posted);
  }
}

bool VirtualEventTaps::reachesTap(const VirtualEvent& event) const {
  if (tap_ == nullptr || !tap_->isEnabled()) return false;
  return !tap_->deaf || !isKey(event.type);
}

void VirtualEventTaps::route(VirtualEvent& event) {
  if (reachesTap(event) && tap_->call(event.type, &event) == nullptr) return;
  deliver_(event);
}

void VirtualEventTaps::setTrusted(bool trusted) {
  trusted_ = trusted;
  if (!trusted) disable();
}

void VirtualEventTaps::disableWithPseudoEvent(EventType type) {
  if (tap_ == nullptr) return;
  tap_->enable(false);
  tap_->call(type, nullptr);
}

void VirtualEventTaps::disable() {
  if (tap_ != nullptr) tap_->enable(false);
}

void VirtualEventTaps::deafen() {
  if (tap_ != nullptr) tap_->deaf = true;
}

}  // namespace tessarok::virtualdesktop

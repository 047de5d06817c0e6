#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <vector>

#include "desktops/plain/PlainEvent.h"
#include "platform/EventTaps.h"

namespace tessarok::plain {

/// The one tap of a desktop whose events are plain values and which sends every event itself. The
/// last tap created counts. Main thread.
template <std::derived_from<PlainEvent> Event>
class PlainEventTaps : public platform::EventTaps {
 public:
  /// The callback gets every kind of event that the desktop has, whatever the mask.
  std::unique_ptr<platform::EventTap> create(std::uint64_t, platform::EventTapCallback callback,
                                             void* userData) final {
    auto tap = std::make_unique<Tap>(*this, callback, userData);
    tap_ = tap.get();
    return tap;
  }
  bool preflightPostAccess() final { return true; }

  /// Whether there is a tap that works.
  [[nodiscard]] bool isOpen() const { return tap_ != nullptr && tap_->isEnabled(); }

 protected:
  /// Shows an event to the tap, if there is one that works; whether it is to go on. What the
  /// callback posts meanwhile is in `posted_`.
  [[nodiscard]] bool show(Event& event) { return !isOpen() || tap_->call(event) != nullptr; }

  /// Hands on what was posted, oldest first, as far as the tap lets it pass: it sees its own events
  /// too, and may post more meanwhile.
  template <std::invocable<const Event&> Deliver>
  void showPosted(const Deliver& deliver) {
    for (std::size_t i = 0; i < posted_.size(); ++i) {
      Event posted(posted_[i]);
      if (show(posted)) deliver(posted);
    }
    posted_.clear();
  }

 private:
  /// Events are sent by the desktop, so a tap needs nothing of a run loop.
  class TapSource final : public platform::RunLoopSource {};

  class Proxy final : public platform::EventTapProxy {
   public:
    explicit Proxy(PlainEventTaps& taps) : taps_(taps) {}
    void post(const platform::Event& event) override {
      taps_.posted_.push_back(static_cast<const Event&>(event));
    }

   private:
    PlainEventTaps& taps_;
  };

  class Tap final : public platform::EventTap {
   public:
    Tap(PlainEventTaps& taps, platform::EventTapCallback callback, void* userData)
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
    platform::Event* call(Event& event) {
      return callback_(&taps_.proxy_, event.type, &event, userData_);
    }

   private:
    void leave() {
      if (taps_.tap_ == this) taps_.tap_ = nullptr;
    }

    PlainEventTaps& taps_;
    platform::EventTapCallback callback_;
    void* userData_;
    bool isEnabled_ = false;
  };

  Proxy proxy_{*this};
  Tap* tap_ = nullptr;
  std::vector<Event> posted_;
};

}  // namespace tessarok::plain

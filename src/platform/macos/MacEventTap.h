#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include "platform/EventTap.h"
#include "platform/macos/CfRef.h"

namespace tessarok::macos {

/// An active Quartz event tap at the head of the session's event stream.
class MacEventTap final : public platform::EventTap {
 public:
  /// Null when the system refuses.
  [[nodiscard]] static std::unique_ptr<MacEventTap> create(CGEventMask mask,
                                                           platform::EventTapCallback callback,
                                                           void* userData);
  ~MacEventTap() override;

  bool isEnabled() const override;
  void enable(bool enabled) override;
  void invalidate() override;
  std::unique_ptr<platform::RunLoopSource> createRunLoopSource(int order) override;

 private:
  MacEventTap(platform::EventTapCallback callback, void* userData)
      : callback_(callback), userData_(userData) {}

  static CGEventRef receive(CGEventTapProxy proxy, CGEventType type, CGEventRef event,
                            void* userInfo);

  platform::EventTapCallback callback_;
  void* userData_;
  CfRef<CFMachPortRef> port_;
};

}  // namespace tessarok::macos

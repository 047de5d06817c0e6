#pragma once

#include <CoreGraphics/CoreGraphics.h>
#include <memory>
#include <utility>

#include "desktops/macos/CfRef.h"
#include "platform/EventTap.h"

namespace tessarok::macos {

/// An active Quartz event tap at the head of the session's event stream. Main thread.
class MacEventTap final : public platform::EventTap {
 public:
  /// Null when the system refuses. `userData` is the system's to hand back, not retained; whoever
  /// it designates destroys the tap before it goes. All taps of the process have one callback: the
  /// system carries no more than the user data.
  [[nodiscard]] static std::unique_ptr<MacEventTap> create(CGEventMask mask,
                                                           platform::EventTapCallback callback,
                                                           void* userData);
  ~MacEventTap() override;

  bool isEnabled() const override;
  void enable(bool enabled) override;
  void invalidate() override;
  std::unique_ptr<platform::RunLoopSource> createRunLoopSource(int order) override;

 private:
  explicit MacEventTap(CfRef<CFMachPortRef> port) : port_(std::move(port)) {}

  static CGEventRef receive(CGEventTapProxy proxy, CGEventType type, CGEventRef event,
                            void* userData);

  static inline platform::EventTapCallback callback_ = nullptr;
  CfRef<CFMachPortRef> port_;
  bool isValid_ = true;
};

}  // namespace tessarok::macos

#pragma once

#include <CoreGraphics/CoreGraphics.h>
#include <memory>

#include "desktops/macos/CfRef.h"
#include "desktops/macos/PermissionNotification.h"
#include "platform/EventTap.h"

namespace tessarok::macos {

/// An active Quartz event tap at the head of the session's event stream. Main thread.
///
/// Why it looks after the permission: without it the system may refuse a tap, or make one that
/// sees clicks but no keys. And when the permission is taken away from a running program, the keys
/// of the whole session wait for its active tap, which is no longer allowed to answer.
///
/// So there is no tap without the permission, and one that has lost it is given up wherever it is
/// looked at. To its owner it is a disabled tap, and making another one is refused.
class MacEventTap final : public platform::EventTap {
 public:
  /// Null when the system refuses, and without the permission. `userData` is handed back, not
  /// owned.
  [[nodiscard]] static std::unique_ptr<MacEventTap> create(CGEventMask mask,
                                                           platform::EventTapCallback callback,
                                                           void* userData);
  ~MacEventTap() override;

  /// Asked at every tick, so this is where a tap without the permission is found at the latest.
  bool isEnabled() const override;
  void enable(bool enabled) override;
  void invalidate() override;
  std::unique_ptr<platform::RunLoopSource> createRunLoopSource(int order) override;

 private:
  /// What the system carries from the tap's creation to each call.
  struct Context {
    platform::EventTapCallback callback;
    void* userData;
  };

  MacEventTap(platform::EventTapCallback callback, void* userData);

  static CGEventRef receive(CGEventTapProxy proxy, CGEventType type, CGEventRef event,
                            void* context);
  /// Whether the tap stands; gives it up if the program may no longer have one.
  bool checkPermission() const;
  void giveUp() const;

  Context context_;
  CfRef<CFMachPortRef> port_;
  /// Looking at a tap may end it.
  mutable bool isValid_ = false;
  PermissionNotification permissionNotification_;
};

}  // namespace tessarok::macos

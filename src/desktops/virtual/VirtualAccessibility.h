#pragma once

#include "platform/Accessibility.h"

namespace tessarok::virtualdesktop {

/// The permission to see and post keys, which is given unless it is set otherwise. Main thread.
class VirtualAccessibility final : public platform::Accessibility {
 public:
  bool isProcessTrusted(bool) override { return trusted; }
  bool trusted = true;
};

}  // namespace tessarok::virtualdesktop

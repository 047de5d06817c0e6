#pragma once

#include "platform/Accessibility.h"

namespace tessarok::plain {

/// Of desktops on which nobody has to be asked for permission to see and send keys. Main thread.
class FreeAccessibility final : public platform::Accessibility {
 public:
  bool isProcessTrusted(bool) override { return true; }
};

}  // namespace tessarok::plain

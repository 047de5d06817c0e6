#pragma once

#include "platform/SecureInput.h"

namespace tessarok::virtualdesktop {

/// Says what it is set to. Main thread.
class VirtualSecureInput final : public platform::SecureInput {
 public:
  bool isEnabled() override { return on; }
  bool on = false;
};

}  // namespace tessarok::virtualdesktop

#pragma once

#include "platform/SecureInput.h"

namespace tessarok::macos {

/// Secure event input, which any program switches on for its protected fields.
class MacSecureInput final : public platform::SecureInput {
 public:
  bool isEnabled() override;
};

}  // namespace tessarok::macos

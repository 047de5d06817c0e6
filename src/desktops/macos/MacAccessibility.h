#pragma once

#include "platform/Accessibility.h"

namespace tessarok::macos {

/// The Accessibility permission of the privacy settings.
class MacAccessibility final : public platform::Accessibility {
 public:
  bool isProcessTrusted(bool prompt) override;
};

}  // namespace tessarok::macos

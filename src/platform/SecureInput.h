#pragma once

namespace tessarok::platform {

/// Tells when the person types into a protected field, such as a password. Main thread.
class SecureInput {
 public:
  virtual ~SecureInput() = default;
  [[nodiscard]] virtual bool isEnabled() = 0;
};

}  // namespace tessarok::platform

#pragma once

#include "desktops/fcitx5/KeyFlow.h"
#include "platform/SecureInput.h"

namespace tessarok::fcitx5 {

/// The text field says that a password is typed there. Main thread.
class FieldSecureInput final : public platform::SecureInput {
 public:
  /// `flow` outlives this object.
  explicit FieldSecureInput(const KeyFlow& flow) : flow_(flow) {}
  bool isEnabled() override { return flow_.isLeftAlone(); }

 private:
  const KeyFlow& flow_;
};

}  // namespace tessarok::fcitx5

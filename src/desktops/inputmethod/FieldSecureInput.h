#pragma once

#include "desktops/inputmethod/KeyFlow.h"
#include "platform/SecureInput.h"

namespace tessarok::inputmethod {

/// The text field says that a password is typed there. Main thread.
class FieldSecureInput final : public platform::SecureInput {
 public:
  /// `flow` outlives this object.
  explicit FieldSecureInput(const KeyFlow& flow) : flow_(flow) {}
  bool isEnabled() override { return flow_.isLeftAlone(); }

 private:
  const KeyFlow& flow_;
};

}  // namespace tessarok::inputmethod

#pragma once

#include <memory>

#include "desktops/inputmethod/Key.h"
#include "desktops/plain/PlainEvent.h"

namespace tessarok::inputmethod {

/// A key that a text field's program handed to the framework, or one that the corrector makes. Main
/// thread.
class FieldEvent final : public plain::PlainEvent {
 public:
  FieldEvent() = default;
  FieldEvent(const FieldEvent&) = default;
  FieldEvent& operator=(const FieldEvent&) = delete;

  std::unique_ptr<platform::Event> copy() const override {
    return std::make_unique<FieldEvent>(*this);
  }

  /// The key as the text field's program sent it; for handing it back.
  Key key;
};

}  // namespace tessarok::inputmethod

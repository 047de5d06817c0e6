#pragma once

#include <vector>

#include "desktops/inputmethod/FieldEvent.h"
#include "desktops/plain/PlainEventTaps.h"

namespace tessarok::inputmethod {

/// The tap that the keys of all text fields pass. Text fields show no clicks. Main thread.
class FieldEventTaps final : public plain::PlainEventTaps<FieldEvent> {
 public:
  /// Shows an event to the tap; whether it is to go on to the text field.
  [[nodiscard]] bool send(FieldEvent& event) { return show(event); }
  /// What the tap has posted since the last time, as far as it lets it pass itself.
  [[nodiscard]] std::vector<FieldEvent> takePosted();
};

}  // namespace tessarok::inputmethod

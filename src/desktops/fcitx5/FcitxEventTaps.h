#pragma once

#include <vector>

#include "desktops/fcitx5/FcitxEvent.h"
#include "desktops/plain/PlainEventTaps.h"

namespace tessarok::fcitx5 {

/// The tap that the keys of all text fields pass. Text fields show Fcitx no clicks. Main thread.
class FcitxEventTaps final : public platform::PlainEventTaps<FcitxEvent> {
 public:
  /// Shows an event to the tap; whether it is to go on to the text field.
  [[nodiscard]] bool send(FcitxEvent& event) { return show(event); }
  /// What the tap has posted since the last time, as far as it lets it pass itself.
  [[nodiscard]] std::vector<FcitxEvent> takePosted();
};

}  // namespace tessarok::fcitx5

#pragma once

#include <fcitx-utils/key.h>
#include <memory>

#include "desktops/plain/PlainEvent.h"

namespace tessarok::fcitx5 {

/// A key that a text field's program handed to Fcitx, or one that the corrector makes. Main thread.
class FcitxEvent final : public platform::PlainEvent {
 public:
  FcitxEvent() = default;
  FcitxEvent(const FcitxEvent&) = default;
  FcitxEvent& operator=(const FcitxEvent&) = delete;

  std::unique_ptr<platform::Event> copy() const override {
    return std::make_unique<FcitxEvent>(*this);
  }

  /// The key as the text field's program sent it; for handing it back.
  fcitx::Key key;
};

}  // namespace tessarok::fcitx5

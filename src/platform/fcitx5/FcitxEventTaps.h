#pragma once

#include <memory>
#include <vector>

#include "platform/EventTaps.h"
#include "platform/fcitx5/FcitxEvent.h"

namespace tessarok::fcitx5 {

/// The tap that the keys of all text fields pass. Main thread.
class FcitxEventTaps final : public platform::EventTaps {
 public:
  FcitxEventTaps();
  ~FcitxEventTaps() override;

  /// The callback gets keys, whatever the mask: text fields show Fcitx no clicks.
  std::unique_ptr<platform::EventTap> create(std::uint64_t mask,
                                             platform::EventTapCallback callback,
                                             void* userData) override;
  bool preflightPostAccess() override { return true; }

  [[nodiscard]] bool isOpen() const;
  /// Shows an event to the tap; whether it is to go on to the text field.
  [[nodiscard]] bool send(FcitxEvent& event);
  /// What the tap has posted since the last time, as far as it lets it pass itself.
  [[nodiscard]] std::vector<FcitxEvent> takePosted();

 private:
  class Tap;
  class Proxy;

  std::unique_ptr<Proxy> proxy_;
  Tap* tap_ = nullptr;
  std::vector<FcitxEvent> posted_;
};

}  // namespace tessarok::fcitx5

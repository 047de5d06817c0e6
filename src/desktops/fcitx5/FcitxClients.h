#pragma once

#include <fcitx/instance.h>
#include <map>
#include <memory>

#include "desktops/fcitx5/FcitxClient.h"

namespace tessarok::fcitx5 {

/// The text fields that Fcitx serves, by its own objects. Main thread.
class FcitxClients final {
 public:
  /// `instance` outlives this object.
  explicit FcitxClients(fcitx::Instance& instance) : instance_(instance) {}

  /// The same for the same text field, until that is forgotten.
  [[nodiscard]] const std::shared_ptr<FcitxClient>& of(fcitx::InputContext& context) {
    auto& client = clients_[&context];
    if (!client) client = std::make_shared<FcitxClient>(instance_, context);
    return client;
  }
  /// Before Fcitx destroys it.
  void forget(fcitx::InputContext& context) { clients_.erase(&context); }

 private:
  fcitx::Instance& instance_;
  std::map<const fcitx::InputContext*, std::shared_ptr<FcitxClient>> clients_;
};

}  // namespace tessarok::fcitx5

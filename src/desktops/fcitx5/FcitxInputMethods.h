#pragma once

#include <fcitx/instance.h>

#include "desktops/inputmethod/InputMethods.h"

namespace tessarok::fcitx5 {

/// The input methods of Fcitx's current group. Main thread.
class FcitxInputMethods final : public inputmethod::InputMethods {
 public:
  /// `instance` outlives this object.
  explicit FcitxInputMethods(fcitx::Instance& instance) : instance_(instance) {}

  std::vector<std::string> chosen() const override;
  std::string current(const inputmethod::Client* client) const override;
  std::optional<xkb::layoutNames::Layout> layoutOf(const std::string& inputMethod) const override;
  std::string identifierOf(const std::string& inputMethod) const override {
    return "fcitx." + inputMethod;
  }
  bool select(inputmethod::Client& client, const std::string& inputMethod) override;
  /// Fcitx switches at once.
  std::optional<double> unsettledUntil(double) override { return std::nullopt; }

 private:
  /// Before Fcitx has read its groups there is no current one to ask for.
  [[nodiscard]] bool hasGroup() const;

  fcitx::Instance& instance_;
};

}  // namespace tessarok::fcitx5

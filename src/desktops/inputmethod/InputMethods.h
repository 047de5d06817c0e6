#pragma once

#include <optional>
#include <string>
#include <vector>

#include "desktops/inputmethod/Client.h"
#include "desktops/xkb/LayoutNames.h"

namespace tessarok::inputmethod {

/// The input methods that a framework switches between, by the framework's own names. Main thread.
class InputMethods {
 public:
  InputMethods() = default;
  InputMethods(const InputMethods&) = delete;
  InputMethods& operator=(const InputMethods&) = delete;
  virtual ~InputMethods() = default;

  /// Those that the person has chosen, in their order.
  [[nodiscard]] virtual std::vector<std::string> chosen() const = 0;
  /// The one that gets the keys of a text field, or would without one; empty when that is not
  /// known.
  [[nodiscard]] virtual std::string current(const Client* client) const = 0;
  /// The layout that one is; absent when it is more than a keyboard layout.
  [[nodiscard]] virtual std::optional<xkb::layoutNames::Layout> layoutOf(
      const std::string& inputMethod) const = 0;
  /// The identifier by which the corrector leaves alone one that is no layout.
  [[nodiscard]] virtual std::string identifierOf(const std::string& inputMethod) const = 0;
  /// Makes one the current one of a text field; whether it is now, or will be.
  [[nodiscard]] virtual bool select(Client& client, const std::string& inputMethod) = 0;
  /// The time until which the last selection may not have taken effect; absent when it has.
  [[nodiscard]] virtual std::optional<double> unsettledUntil(double now) = 0;
};

}  // namespace tessarok::inputmethod

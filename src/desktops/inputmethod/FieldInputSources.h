#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desktops/inputmethod/InputMethods.h"
#include "desktops/inputmethod/XkbLayout.h"
#include "platform/InputSources.h"

namespace tessarok::inputmethod {

/// The input methods that a person has chosen, as input sources. Those that are keyboard layouts go
/// by the names that the corrector knows them by, all others by names that it leaves alone. Main
/// thread.
class FieldInputSources final : public platform::InputSources {
 public:
  /// `methods` outlives this object.
  explicit FieldInputSources(InputMethods& methods) : methods_(methods) {}

  std::vector<std::shared_ptr<platform::InputSourceHandle>> enabledLayouts() override;
  const std::optional<std::string>& current() override;
  /// While selections are put off: takes note, and `current` answers as if it were done.
  bool select(platform::InputSourceHandle& source) override;

  /// The text field in which keys are being typed; null for none.
  void setClient(std::shared_ptr<Client> client) { client_ = std::move(client); }
  /// A selection is to wait until what was typed before it has arrived.
  void putOffSelections(bool putOff) { putsOff_ = putOff; }
  /// The input method that `select` was asked for meanwhile; absent when there is none.
  [[nodiscard]] std::optional<std::string> takePutOff();
  /// Makes an input method the current one of a text field; whether it is now.
  bool selectNow(Client& client, const std::string& inputMethod);
  /// No selection is to come any more, whatever was put off.
  void forgetPutOff();
  /// The time until which the last selection may not have taken effect; absent when it has.
  [[nodiscard]] std::optional<double> unsettledUntil(double now) {
    return methods_.unsettledUntil(now);
  }

  /// The input method that gets the keys of a text field; empty when that is not known.
  [[nodiscard]] std::string inputMethodOf(const Client& client) const {
    return methods_.current(&client);
  }
  /// The layout in which a text field's keys are; null when it has none that is known.
  [[nodiscard]] std::shared_ptr<const XkbLayout> layoutOf(const Client& client) const;
  /// Whether the input method of a text field is a mere keyboard layout.
  [[nodiscard]] bool isKeyboard(const Client& client) const;

 private:
  class Handle;

  [[nodiscard]] std::string identifierOf(const std::string& inputMethod) const;

  InputMethods& methods_;
  /// Null when there is none.
  std::shared_ptr<Client> client_;
  bool putsOff_ = false;
  /// Selected as far as the corrector knows, but not yet in the framework.
  std::optional<std::string> pending_;
  /// What `takePutOff` has handed out is pending until it is selected or forgotten.
  bool isTaken_ = false;
  std::optional<std::string> current_;
};

}  // namespace tessarok::inputmethod

#pragma once

#include <fcitx/instance.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desktops/fcitx5/XkbLayout.h"
#include "platform/InputSources.h"

namespace tessarok::fcitx5 {

/// The input methods of Fcitx's current group. Those that are keyboard layouts go by the names
/// that the corrector knows them by, all others by names that it leaves alone. Main thread.
class FcitxInputSources final : public platform::InputSources {
 public:
  /// `instance` outlives this object.
  explicit FcitxInputSources(fcitx::Instance& instance) : instance_(instance) {}

  std::vector<std::shared_ptr<platform::InputSourceHandle>> enabledLayouts() override;
  const std::optional<std::string>& current() override;
  /// While selections are put off: takes note, and `current` answers as if it were done.
  bool select(platform::InputSourceHandle& source) override;

  /// The text field in which keys are being typed; null for none.
  void setContext(fcitx::InputContext* context);
  /// A selection is to wait until what was typed before it has arrived.
  void putOffSelections(bool putOff) { putsOff_ = putOff; }
  /// The input method that `select` was asked for meanwhile; absent when there is none.
  [[nodiscard]] std::optional<std::string> takePutOff();
  /// Makes an input method of the group the current one of a text field; whether it is now.
  bool selectNow(fcitx::InputContext& context, const std::string& inputMethod);
  /// No selection is to come any more, whatever was put off.
  void forgetPutOff();

  /// The layout in which a text field's keys are; null when it has none that is known.
  [[nodiscard]] std::shared_ptr<const XkbLayout> layoutOf(fcitx::InputContext& context);
  /// Whether the input method of a text field is a mere keyboard layout.
  [[nodiscard]] bool isKeyboard(fcitx::InputContext& context);

 private:
  class Handle;

  [[nodiscard]] std::string inputMethodOf(fcitx::InputContext* context);
  [[nodiscard]] std::optional<xkb::layoutNames::Layout> xkbLayout(const std::string& inputMethod);
  [[nodiscard]] std::string identifierOf(const std::string& inputMethod);

  fcitx::Instance& instance_;
  fcitx::TrackableObjectReference<fcitx::InputContext> context_;
  bool putsOff_ = false;
  /// Selected as far as the corrector knows, but not yet in Fcitx.
  std::optional<std::string> pending_;
  /// What `takePutOff` has handed out is pending until it is selected or forgotten.
  bool isTaken_ = false;
  std::optional<std::string> current_;
};

}  // namespace tessarok::fcitx5

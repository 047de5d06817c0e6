#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "desktops/terminal/InputItem.h"

namespace tessarok::terminal {

/// The keys that are this program's, in every form in which terminals send them. Each can be left
/// to the programs, because Alt+Space is a window's menu and Control+Space a mark in many. Main
/// thread.
class HotKeys final {
 public:
  enum class Key { none, manual, layout };
  enum class Phase { press, repeat, release };
  struct Press {
    Key key = Key::none;
    Phase phase = Phase::press;
  };
  /// Answers with a setting that is a text; absent when it was never set.
  using Settings = std::function<std::optional<std::string>(std::string_view key)>;

  explicit HotKeys(Settings settings) : settings_(std::move(settings)) {}

  /// Whose key an item is; `none` for a key of the program.
  [[nodiscard]] Press of(const InputItem& item) const;
  /// The grave accent pauses.
  [[nodiscard]] bool pausesWithGrave() const;

 private:
  Settings settings_;
};

}  // namespace tessarok::terminal

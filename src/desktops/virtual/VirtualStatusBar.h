#pragma once

#include <memory>
#include <string>

#include "platform/StatusBar.h"

namespace tessarok::virtualdesktop {

/// A status bar with every symbol; remembers what was last drawn.
class VirtualStatusBar final : public platform::StatusBar {
 public:
  struct Icon {
    std::string symbol;
    bool dimmed = false;
    std::string toolTip;
  };

  std::unique_ptr<platform::StatusItem> createItem() override;

  [[nodiscard]] const Icon& icon() const { return icon_; }
  /// Null before the program made its item.
  [[nodiscard]] const platform::Menu* menu() const { return menu_.get(); }
  /// Chooses the item with this title, as a person does: one that is disabled or has no action
  /// does nothing. False when there is no such item.
  bool choose(std::string_view title);

 private:
  class Item;

  Icon icon_;
  std::shared_ptr<platform::Menu> menu_;
};

}  // namespace tessarok::virtualdesktop

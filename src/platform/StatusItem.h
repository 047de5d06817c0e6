#pragma once

#include <memory>
#include <string_view>

#include "platform/Menu.h"

namespace tessarok::platform {

/// The program's icon in the desktop's bar. Main thread.
class StatusItem {
 public:
  StatusItem() = default;
  StatusItem(const StatusItem&) = delete;
  StatusItem& operator=(const StatusItem&) = delete;
  virtual ~StatusItem() = default;

  /// Whether there is anything to draw on; without it the icon is left alone.
  [[nodiscard]] virtual bool hasButton() const = 0;
  /// Shows a symbol by its name and clears the title; false, with nothing changed, when the
  /// desktop has no such symbol.
  [[nodiscard]] virtual bool setSymbol(std::string_view name) = 0;
  virtual void setTitle(std::string_view title) = 0;
  virtual void setAppearsDisabled(bool disabled) = 0;
  virtual void setToolTip(std::string_view toolTip) = 0;
  /// Attaches the menu, which stays the caller's; the desktop draws it as it is when opened and
  /// calls `MenuItem::action` when an enabled item is chosen.
  virtual void setMenu(std::shared_ptr<Menu> menu) = 0;
};

}  // namespace tessarok::platform

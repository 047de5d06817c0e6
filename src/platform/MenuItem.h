#pragma once

#include <functional>
#include <memory>
#include <string>

namespace tessarok::platform {

struct Menu;

/// One line of a menu. The desktop reads it whenever it draws.
struct MenuItem {
  std::string title;
  bool isSeparator = false;
  bool enabled = true;
  /// The check mark.
  bool state = false;
  int tag = 0;
  /// The key that chooses the item together with Command; empty for none.
  std::string keyEquivalent;
  /// Empty for an item that only informs or opens a submenu.
  std::function<void(MenuItem& sender)> action;
  /// Null for an item without one.
  std::shared_ptr<Menu> submenu;
};

}  // namespace tessarok::platform

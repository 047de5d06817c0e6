#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "desktops/freedesktop/StatusDrawing.h"

namespace tessarok::freedesktop {

/// A symbol that the program shows in the status bar, as this desktop knows it.
struct StatusSymbol {
  /// The icon's name in the theme without what tells its variants apart.
  std::string_view icon;
  /// What the icon says, for people who do not see it.
  std::string_view description;
  StatusDrawing drawing;

  /// Absent when the desktop has no symbol of this name.
  [[nodiscard]] static std::optional<StatusSymbol> named(std::string_view name);
  /// Every one that the program may show.
  [[nodiscard]] static std::vector<StatusSymbol> all();
  /// The icon's name in the theme. The ending lets panels draw it in their own colour.
  [[nodiscard]] std::string iconName(bool dimmed) const {
    return std::string(icon) + (dimmed ? "-dimmed-symbolic" : "-symbolic");
  }
};

}  // namespace tessarok::freedesktop

#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace tessarok::freedesktop {

/// A status icon drawn here, for panels that cannot read the icon theme: dark lines with a light
/// edge, readable on any panel.
struct StatusDrawing {
  /// Pixels in a row, and rows.
  static constexpr int kSize = 22;

  /// How much of each pixel is covered: rows of hexadecimal digits, '.' for none.
  std::string_view coverage;

  /// Four bytes a pixel: alpha, red, green, blue, as panels expect them.
  [[nodiscard]] std::vector<std::uint8_t> pixels(bool dimmed) const;
};

}  // namespace tessarok::freedesktop

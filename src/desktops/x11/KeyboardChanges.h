#pragma once

#include <vector>

namespace tessarok::x11 {

/// Keyboards that were enabled or disabled, even if they are now what they were before. A plain
/// value.
struct KeyboardChanges {
  std::vector<int> devices = {};
  /// The serial number with which the connection told of it.
  unsigned long serial = 0;
};

}  // namespace tessarok::x11

#pragma once

#include <memory>
#include <vector>

#include "platform/MenuItem.h"

namespace tessarok::platform {

/// A list of items, top to bottom.
struct Menu {
  std::vector<std::shared_ptr<MenuItem>> items;
};

}  // namespace tessarok::platform

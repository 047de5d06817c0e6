#pragma once

#include <memory>

#include "platform/StatusItem.h"

namespace tessarok::platform {

/// The desktop's bar of status icons. Main thread.
class StatusBar {
 public:
  virtual ~StatusBar() = default;
  /// A new item as wide as its content.
  [[nodiscard]] virtual std::unique_ptr<StatusItem> createItem() = 0;
};

}  // namespace tessarok::platform

#pragma once

#include "platform/StatusBar.h"

namespace tessarok::plain {

/// Where there is no place for an icon, and so no menu either. Main thread.
class NoStatusBar final : public platform::StatusBar {
 public:
  std::unique_ptr<platform::StatusItem> createItem() override { return nullptr; }
};

}  // namespace tessarok::plain

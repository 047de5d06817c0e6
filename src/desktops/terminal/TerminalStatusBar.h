#pragma once

#include <memory>

#include "platform/StatusBar.h"

namespace tessarok::terminal {

/// The program's icon and menu, of which a terminal shows nothing but whether the icon says that
/// the corrector works. Main thread.
class TerminalStatusBar final : public platform::StatusBar {
 public:
  std::unique_ptr<platform::StatusItem> createItem() override;

  /// It corrects: it is neither switched off nor paused nor missing anything.
  [[nodiscard]] bool works() const { return *works_; }

 private:
  class Item;

  /// The icon's, and asked for after it has gone.
  std::shared_ptr<bool> works_ = std::make_shared<bool>(true);
};

}  // namespace tessarok::terminal

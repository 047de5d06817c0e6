#pragma once

#include <memory>

#include "platform/StatusBar.h"

namespace tessarok::terminal {

/// The program's icon and menu, of which a terminal shows nothing but whether they say that the
/// corrector works. Main thread.
class TerminalStatusBar final : public platform::StatusBar {
 public:
  std::unique_ptr<platform::StatusItem> createItem() override;

  /// It corrects: it is neither switched off nor paused nor missing anything.
  [[nodiscard]] bool works() const { return state_->works; }
  /// It is switched on, paused or not.
  [[nodiscard]] bool isEnabled() const;
  /// What the menu's switch does.
  void setEnabled(bool enabled);

 private:
  struct State {
    bool works = true;
    std::shared_ptr<platform::Menu> menu;
  };
  class Item;

  [[nodiscard]] std::shared_ptr<platform::MenuItem> enabledItem() const;

  std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace tessarok::terminal

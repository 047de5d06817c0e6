#include "desktops/terminal/TerminalStatusBar.h"

#include <utility>

namespace tessarok::terminal {

class TerminalStatusBar::Item final : public platform::StatusItem {
 public:
  explicit Item(std::shared_ptr<State> state) : state_(std::move(state)) {}

  bool hasButton() const override { return true; }
  bool setSymbol(std::string_view) override { return true; }
  void setTitle(std::string_view) override {}
  void setAppearsDisabled(bool disabled) override { state_->works = !disabled; }
  void setToolTip(std::string_view) override {}
  void setMenu(std::shared_ptr<platform::Menu> menu) override { state_->menu = std::move(menu); }

 private:
  std::shared_ptr<State> state_;
};

std::unique_ptr<platform::StatusItem> TerminalStatusBar::createItem() {
  return std::make_unique<Item>(state_);
}

std::shared_ptr<platform::MenuItem> TerminalStatusBar::enabledItem() const {
  // The menu begins with the switch.
  if (!state_->menu || state_->menu->items.empty()) return nullptr;
  return state_->menu->items.front();
}

bool TerminalStatusBar::isEnabled() const {
  const auto item = enabledItem();
  return item && item->state;
}

void TerminalStatusBar::setEnabled(bool enabled) {
  const auto item = enabledItem();
  if (item && item->action && item->state != enabled) item->action(*item);
}

}  // namespace tessarok::terminal

#include "desktops/terminal/TerminalStatusBar.h"

#include <utility>

namespace tessarok::terminal {

class TerminalStatusBar::Item final : public platform::StatusItem {
 public:
  explicit Item(std::shared_ptr<bool> works) : works_(std::move(works)) {}

  bool hasButton() const override { return true; }
  bool setSymbol(std::string_view) override { return true; }
  void setTitle(std::string_view) override {}
  void setAppearsDisabled(bool disabled) override { *works_ = !disabled; }
  void setToolTip(std::string_view) override {}
  void setMenu(std::shared_ptr<platform::Menu>) override {}

 private:
  std::shared_ptr<bool> works_;
};

std::unique_ptr<platform::StatusItem> TerminalStatusBar::createItem() {
  return std::make_unique<Item>(works_);
}

}  // namespace tessarok::terminal

#include "desktops/virtual/VirtualStatusBar.h"

#include <utility>

namespace tessarok::virtualdesktop {

namespace {

std::shared_ptr<platform::MenuItem> findItem(const platform::Menu& menu, std::string_view title) {
  for (const auto& item : menu.items) {
    if (!item->isSeparator && item->title == title) return item;
    if (item->submenu) {
      if (auto found = findItem(*item->submenu, title)) return found;
    }
  }
  return nullptr;
}

}  // namespace

class VirtualStatusBar::Item final : public platform::StatusItem {
 public:
  explicit Item(VirtualStatusBar& bar) : bar_(bar) {}

  bool hasButton() const override { return true; }
  bool setSymbol(std::string_view name) override {
    bar_.icon_.symbol = name;
    return true;
  }
  void setTitle(std::string_view) override {}
  void setAppearsDisabled(bool disabled) override { bar_.icon_.dimmed = disabled; }
  void setToolTip(std::string_view toolTip) override { bar_.icon_.toolTip = toolTip; }
  void setMenu(std::shared_ptr<platform::Menu> menu) override { bar_.menu_ = std::move(menu); }

 private:
  VirtualStatusBar& bar_;
};

std::unique_ptr<platform::StatusItem> VirtualStatusBar::createItem() {
  return std::make_unique<Item>(*this);
}

bool VirtualStatusBar::choose(std::string_view title) {
  const auto item = menu_ ? findItem(*menu_, title) : nullptr;
  if (!item) return false;
  if (item->enabled && item->action) item->action(*item);
  return true;
}

}  // namespace tessarok::virtualdesktop

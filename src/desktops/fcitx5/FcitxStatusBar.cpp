#include "desktops/fcitx5/FcitxStatusBar.h"

#include <algorithm>
#include <fcitx/action.h>
#include <fcitx/inputcontextmanager.h>
#include <fcitx/menu.h>
#include <fcitx/statusarea.h>
#include <fcitx/userinterfacemanager.h>
#include <utility>

#include "desktops/freedesktop/StatusSymbol.h"

namespace tessarok::fcitx5 {

namespace {

constexpr const char* kName = "tessarok";

}  // namespace

/// A line of the menu.
class FcitxStatusBar::ItemAction final : public fcitx::Action {
 public:
  ItemAction(FcitxStatusBar& bar, std::shared_ptr<platform::MenuItem> item, bool isSwitch)
      : bar_(bar), item_(std::move(item)) {
    setSeparator(item_->isSeparator);
    setCheckable(isSwitch);
  }

  std::string shortText(fcitx::InputContext*) const override { return item_->title; }
  std::string icon(fcitx::InputContext*) const override { return {}; }
  bool isChecked(fcitx::InputContext*) const override { return item_->state; }
  void activate(fcitx::InputContext*) override {
    // It may take the menu away.
    const auto item = item_;
    auto& bar = bar_;
    if (!item->enabled || !item->action) return;
    bar.guard_([&] {
      item->action(*item);
      bar.update();
    });
  }

 private:
  FcitxStatusBar& bar_;
  std::shared_ptr<platform::MenuItem> item_;
};

class FcitxStatusBar::MainAction final : public fcitx::Action {
 public:
  std::string shortText(fcitx::InputContext*) const override { return title; }
  std::string longText(fcitx::InputContext*) const override { return toolTip; }
  std::string icon(fcitx::InputContext*) const override { return iconName; }

  std::string title = "Tessarok";
  std::string toolTip;
  std::string iconName = kName;
};

class FcitxStatusBar::Item final : public platform::StatusItem {
 public:
  explicit Item(FcitxStatusBar& bar) : bar_(bar) {
    main_.registerAction(kName, &bar_.instance_.userInterfaceManager());
  }
  ~Item() override {
    bar_.item_ = nullptr;
    bar_.instance_.inputContextManager().foreach ([this](fcitx::InputContext* context) {
      context->statusArea().removeAction(&main_);
      context->updateUserInterface(fcitx::UserInterfaceComponent::StatusArea);
      return true;
    });
    main_.setMenu(nullptr);
  }

  bool hasButton() const override { return true; }
  bool setSymbol(std::string_view name) override {
    const auto symbol = freedesktop::StatusSymbol::named(name);
    if (!symbol) return false;
    symbol_ = symbol;
    main_.title = "Tessarok";
    draw();
    return true;
  }
  void setTitle(std::string_view title) override {
    main_.title = title;
    draw();
  }
  void setAppearsDisabled(bool disabled) override {
    isDimmed_ = disabled;
    draw();
  }
  void setToolTip(std::string_view toolTip) override {
    main_.toolTip = toolTip;
    draw();
  }
  void setMenu(std::shared_ptr<platform::Menu> menu) override {
    main_.setMenu(nullptr);
    actions_.clear();
    menus_.clear();
    menu_ = std::move(menu);
    main_.setMenu(menu_ ? build(*menu_, false) : nullptr);
  }

  void showFor(fcitx::InputContext& context) {
    auto& area = context.statusArea();
    const auto shown = area.actions(fcitx::StatusGroup::AfterInputMethod);
    if (std::find(shown.begin(), shown.end(), &main_) != shown.end()) return;
    area.addAction(fcitx::StatusGroup::AfterInputMethod, &main_);
    context.updateUserInterface(fcitx::UserInterfaceComponent::StatusArea);
  }
  void update() {
    auto* context = bar_.instance_.mostRecentInputContext();
    if (context == nullptr) return;
    main_.update(context);
    for (const auto& action : actions_)
      action->update(context);
  }
  [[nodiscard]] const std::shared_ptr<platform::Menu>& menu() const { return menu_; }

 private:
  fcitx::Menu* build(const platform::Menu& menu, bool isSubmenu) {
    auto& made = *menus_.emplace_back(std::make_unique<fcitx::Menu>());
    for (const auto& item : menu.items) {
      // Those that are on at first, and the lists of switches.
      const bool isSwitch = item->action != nullptr && (item->state || isSubmenu);
      auto& action = *actions_.emplace_back(std::make_unique<ItemAction>(bar_, item, isSwitch));
      action.registerAction(std::string(kName) + "-" + std::to_string(actions_.size()),
                            &bar_.instance_.userInterfaceManager());
      if (item->submenu) action.setMenu(build(*item->submenu, true));
      made.addAction(&action);
    }
    return &made;
  }
  void draw() {
    if (symbol_) main_.iconName = symbol_->iconName(isDimmed_);
    auto* context = bar_.instance_.mostRecentInputContext();
    if (context != nullptr) main_.update(context);
  }

  FcitxStatusBar& bar_;
  MainAction main_;
  std::optional<freedesktop::StatusSymbol> symbol_;
  bool isDimmed_ = false;
  std::shared_ptr<platform::Menu> menu_;
  std::vector<std::unique_ptr<fcitx::Menu>> menus_;
  std::vector<std::unique_ptr<ItemAction>> actions_;
};

FcitxStatusBar::FcitxStatusBar(fcitx::Instance& instance, inputmethod::Guard& guard)
    : instance_(instance), guard_(guard) {}

FcitxStatusBar::~FcitxStatusBar() = default;

std::unique_ptr<platform::StatusItem> FcitxStatusBar::createItem() {
  auto item = std::make_unique<Item>(*this);
  item_ = item.get();
  return item;
}

void FcitxStatusBar::showFor(fcitx::InputContext& context) {
  if (item_ != nullptr) item_->showFor(context);
}

std::shared_ptr<platform::Menu> FcitxStatusBar::menu() const {
  return item_ == nullptr ? nullptr : item_->menu();
}

void FcitxStatusBar::update() {
  if (item_ != nullptr) item_->update();
}

}  // namespace tessarok::fcitx5

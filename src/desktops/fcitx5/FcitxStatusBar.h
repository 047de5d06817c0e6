#pragma once

#include <fcitx/inputcontext.h>
#include <fcitx/instance.h>
#include <memory>
#include <string>
#include <vector>

#include "desktops/inputmethod/Guard.h"
#include "platform/StatusBar.h"

namespace tessarok::fcitx5 {

/// The corrector's place in Fcitx's status area, which is drawn by whatever shows Fcitx in the
/// desktop's bar. There is one item. Main thread.
class FcitxStatusBar final : public platform::StatusBar {
 public:
  /// Both outlive this object.
  FcitxStatusBar(fcitx::Instance& instance, inputmethod::Guard& guard);
  FcitxStatusBar(const FcitxStatusBar&) = delete;
  FcitxStatusBar& operator=(const FcitxStatusBar&) = delete;
  ~FcitxStatusBar() override;

  std::unique_ptr<platform::StatusItem> createItem() override;
  /// Shows the item for a text field; each has a status area of its own.
  void showFor(fcitx::InputContext& context);
  /// The menu of the item; null while there is none.
  [[nodiscard]] std::shared_ptr<platform::Menu> menu() const;
  /// Something in the menu is another.
  void update();

 private:
  class Item;
  class ItemAction;
  class MainAction;

  fcitx::Instance& instance_;
  inputmethod::Guard& guard_;
  Item* item_ = nullptr;
};

}  // namespace tessarok::fcitx5

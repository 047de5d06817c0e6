#pragma once

#include <memory>
#include <optional>
#include <string>

#include "desktops/freedesktop/Bus.h"
#include "desktops/freedesktop/IconTheme.h"
#include "desktops/freedesktop/MenuExport.h"
#include "desktops/freedesktop/StatusSymbol.h"
#include "platform/RunLoop.h"
#include "platform/StatusItem.h"
#include "platform/SystemLog.h"

namespace tessarok::freedesktop {

/// The program's icon in a panel: org.kde.StatusNotifierItem. Main thread.
///
/// A panel is found through the watcher, which may start after the program and may be restarted:
/// the item is registered again with every new one. Without a panel the item remembers what it
/// would show.
class StatusNotifierItem final : public platform::StatusItem {
 public:
  /// Seconds after which a panel that has not come is no longer expected. At login the panel may
  /// be slower than the program.
  static constexpr double kPanelPatience = 15.0;

  /// Everything outlives the item.
  StatusNotifierItem(Bus& bus, platform::RunLoop& loop, platform::SystemLog& log,
                     const IconTheme& theme);
  ~StatusNotifierItem() override { *registered_ = false; }

  bool hasButton() const override { return true; }
  bool setSymbol(std::string_view name) override;
  void setTitle(std::string_view title) override;
  void setAppearsDisabled(bool disabled) override;
  void setToolTip(std::string_view toolTip) override;
  void setMenu(std::shared_ptr<platform::Menu> menu) override { menu_.setMenu(std::move(menu)); }

  /// True while a panel has the item. The flag outlives the item, and is then false.
  [[nodiscard]] std::shared_ptr<const bool> shown() const { return registered_; }

 private:
  struct Calls;
  /// What a panel reads to draw the icon: a name in the theme, or pixels.
  struct Image {
    std::string name;
    std::string themeFolder;
    std::optional<StatusDrawing> drawing;
  };

  [[nodiscard]] Image image() const;
  void announce(const char* signal);
  void registerWithWatcher();
  void sayIfNoPanel();

  Bus& bus_;
  platform::RunLoop& loop_;
  platform::SystemLog& log_;
  const IconTheme& theme_;
  std::string busName_;
  std::optional<StatusSymbol> symbol_;
  std::string title_;
  bool dimmed_ = false;
  std::string toolTip_;
  std::shared_ptr<bool> registered_ = std::make_shared<bool>(false);
  MenuExport menu_;
  std::shared_ptr<StatusNotifierItem*> self_ = std::make_shared<StatusNotifierItem*>(this);
  BusSlot object_;
  BusSlot name_;
  BusSlot watcherChanges_;
  BusSlot registration_;
};

}  // namespace tessarok::freedesktop

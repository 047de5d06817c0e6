#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "desktops/freedesktop/Bus.h"
#include "desktops/freedesktop/BusWriter.h"
#include "platform/Menu.h"
#include "platform/RunLoop.h"

namespace tessarok::freedesktop {

/// Offers a menu to panels: com.canonical.dbusmenu. The menu stays its maker's and is read again
/// whenever a panel asks or an item was chosen; what has changed since is announced. Main thread.
class MenuExport final {
 public:
  /// `bus`, `loop` and `path` outlive the object.
  MenuExport(Bus& bus, platform::RunLoop& loop, const char* path);
  MenuExport(const MenuExport&) = delete;
  MenuExport& operator=(const MenuExport&) = delete;
  ~MenuExport() = default;

  void setMenu(std::shared_ptr<platform::Menu> menu);

 private:
  /// What panels were told of an item; an empty text for a property at its default.
  struct Properties {
    bool isSeparator = false;
    bool enabled = true;
    bool isCheckable = false;
    bool isChecked = false;
    bool hasSubmenu = false;
    std::string label;

    bool operator==(const Properties&) const = default;
  };
  struct Entry {
    /// Null for the menu itself.
    std::shared_ptr<platform::MenuItem> item;
    std::vector<std::int32_t> children;
    Properties properties;
  };
  using Entries = std::map<std::int32_t, Entry>;
  struct Calls;

  [[nodiscard]] Entries read();
  void readInto(Entries& entries, std::int32_t parent, const platform::Menu& menu);
  void noteSwitches(const platform::Menu& menu);
  [[nodiscard]] Properties propertiesOf(const platform::MenuItem& item) const;
  /// Reads the menu again and announces what has changed.
  void refresh();
  void announceProperties(const std::vector<std::int32_t>& changed);
  bool choose(std::int32_t number, const std::string& event);
  void appendItem(BusWriter& body, std::int32_t number, std::int32_t depth);
  void appendPropertiesOf(BusWriter& body, const std::vector<std::int32_t>& numbers);
  static void appendProperties(BusWriter& body, const Properties& properties);

  Bus& bus_;
  platform::RunLoop& loop_;
  const char* path_;
  std::shared_ptr<platform::Menu> menu_;
  Entries entries_;
  std::uint32_t revision_ = 1;
  /// Items that show an empty box when they are off: those that have had a check mark, and every
  /// item of a list of nothing but choices of which one has. Only compared, never followed.
  std::set<const platform::MenuItem*> switches_;
  std::shared_ptr<MenuExport*> self_ = std::make_shared<MenuExport*>(this);
  BusSlot object_;
};

}  // namespace tessarok::freedesktop

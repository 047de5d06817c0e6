#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desktops/freedesktop/Bus.h"
#include "tests/desktops/freedesktop/Pump.h"

namespace tessarok::testing {

/// A panel: the watcher with which icons register, and a reader of the icon and its menu.
class StatusHost final {
 public:
  /// An item of a menu as a panel draws it.
  struct Line {
    std::int32_t number = 0;
    std::string label;
    bool isSeparator = false;
    bool enabled = true;
    /// Absent for an item without a check box.
    std::optional<bool> checked;
    std::vector<Line> children;
  };
  struct Pixels {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> bytes;
  };

  StatusHost(Pump& pump, const std::string& address);

  /// Stops being the panel, as one that crashes.
  void leave();

  /// The names under which icons have registered, in the order in which they came.
  [[nodiscard]] const std::vector<std::string>& registered() const { return registered_; }
  /// Waits for the first icon.
  [[nodiscard]] bool seesIcon();

  /// A property of the icon, asked for now.
  [[nodiscard]] std::string text(const char* property);
  [[nodiscard]] std::string toolTip();
  [[nodiscard]] std::vector<Pixels> pixels();
  /// The whole menu, asked for now.
  [[nodiscard]] std::vector<Line> menu();
  /// The menu as text, a line an item: `[x]` and `[ ]` are check boxes, `-` a disabled item,
  /// two spaces of indent a submenu.
  [[nodiscard]] std::string drawnMenu();
  /// Tells the program that the item was chosen; false when there is none of this label or the
  /// program answers with an error.
  bool choose(const std::string& label);
  /// The same for any event and item number.
  bool sendEvent(std::int32_t number, const char* event);
  /// Calls a method of the menu; null when it is answered with an error.
  [[nodiscard]] freedesktop::BusMessage callMenu(freedesktop::BusMessage call);
  [[nodiscard]] freedesktop::BusMessage menuCall(const char* member);

  /// Signals of the icon and its menu since the last call, by name.
  [[nodiscard]] std::vector<std::string> takeSignals() { return std::exchange(signals_, {}); }
  [[nodiscard]] const std::vector<std::string>& signals() const { return signals_; }

 private:
  struct Calls;

  [[nodiscard]] freedesktop::BusMessage answer(freedesktop::BusMessage call);
  [[nodiscard]] freedesktop::BusMessage property(const char* name);

  Pump& pump_;
  std::unique_ptr<freedesktop::Bus> bus_;
  std::vector<std::string> registered_;
  std::vector<std::string> signals_;
  freedesktop::BusSlot watcher_;
  freedesktop::BusSlot name_;
  std::vector<freedesktop::BusSlot> heard_;
};

}  // namespace tessarok::testing

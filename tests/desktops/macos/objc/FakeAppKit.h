#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

/// The state of AppKit and Foundation on the Mac that the tests run on: what the person does is a
/// call here, and what the program showed can be read back.
namespace tessarok::fakemac {

struct ShownMenuItem {
  std::string title;
  bool isSeparator = false;
  bool isEnabled = false;
  bool isOn = false;
  long tag = 0;
  std::string keyEquivalent;
  std::vector<ShownMenuItem> submenu;
};

struct ShownStatusItem {
  /// Empty without an image.
  std::string symbol;
  double pointSize = 0;
  bool isTemplate = false;
  std::string title;
  std::string toolTip;
  bool isDimmed = false;
  double length = 0;
};

class FakeAppKit final {
 public:
  /// What happens after the launch, on the main thread, inside the event loop.
  std::function<void()> onRun;
  bool isTerminated = false;
  int activationPolicy = 0;
  /// The reasons and options of the activities that go on.
  std::vector<std::pair<std::string, std::uint64_t>> activities;

  std::string homeDirectory;
  /// Empty when the system names none.
  std::string applicationSupport;
  struct Running {
    int processIdentifier;
    double launchDate;
    bool hasLaunchDate;
  };
  Running self{100, 5000, true};
  std::vector<Running> others;

  /// The symbols that this system does not have.
  std::set<std::string> missingSymbols;
  bool hasStatusButton = true;
  std::vector<std::string> openedUrls;
  std::vector<std::string> logged;
  /// How many observers the workspace's centre has.
  [[nodiscard]] std::size_t observers() const;
  void announce(const std::string& notification);

  [[nodiscard]] std::size_t statusItems() const;
  [[nodiscard]] ShownStatusItem statusItem() const;
  /// The person opens the menu: what is shown then.
  [[nodiscard]] std::vector<ShownMenuItem> openMenu() const;
  /// The person chooses an enabled item, of the menu or of a submenu. False when there is none, or
  /// when nobody is left to act on it.
  bool choose(const std::string& title) const;
};

[[nodiscard]] FakeAppKit& fakeAppKit();

}  // namespace tessarok::fakemac

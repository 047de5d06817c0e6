#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/AppDelegate.h"
#include "desktops/layouts/KeyTable.h"
#include "desktops/macos/MacDesktop.h"
#include "desktops/posix/NotificationCentre.h"
#include "desktops/virtual/TextField.h"
#include "desktops/virtual/VirtualApplication.h"
#include "desktops/virtual/VirtualFiles.h"
#include "desktops/virtual/VirtualStatusBar.h"
#include "desktops/virtual/VirtualSystemLog.h"
#include "desktops/virtual/VirtualWorkspace.h"
#include "tests/desktops/macos/fake/FakeSystem.h"

namespace tessarok::macostest {

/// The Objective-C services of the fake system, seen from the side of the tests. The objects
/// belong to the desktop that they are given to.
struct FakeObjectiveCServices {
  virtualdesktop::VirtualApplication* application = nullptr;
  virtualdesktop::VirtualStatusBar* statusBar = nullptr;
  virtualdesktop::VirtualSystemLog* systemLog = nullptr;
  virtualdesktop::VirtualWorkspace* workspace = nullptr;
  posix::NotificationCentre* workspaceNotifications = nullptr;

  [[nodiscard]] macos::ObjectiveCServices make(const std::filesystem::path& home);
};

/// A key going down or up.
struct Key {
  std::int64_t code = 0;
  CGEventFlags flags = 0;
  bool autorepeat = false;
  /// In place of what the layout gives.
  std::optional<std::u16string> text = std::nullopt;
  std::int64_t userData = 0;
};

/// The whole program on the fake Mac, and an application with a text field to type into. One per
/// process. Each call is one turn of the main loop.
class Mac final {
 public:
  /// `home` exists; the data files lie in `resources`.
  Mac(const std::filesystem::path& home, const std::filesystem::path& resources);
  Mac(const Mac&) = delete;
  Mac& operator=(const Mac&) = delete;
  /// Quits the program.
  ~Mac();

  /// Enables these layouts, in this order. The current one stays even when it is not among them.
  void enable(const std::vector<std::string>& identifiers);
  [[nodiscard]] bool isEnabled(const std::string& identifier) const;
  void setCurrent(const std::string& identifier);

  void launch();
  void quit();
  void endTurn();

  void keyDown(const Key& key);
  void keyUp(const Key& key);
  void stroke(const layouts::KeyTable::Stroke& stroke);
  /// One key per character, as on the US layout.
  void type(std::string_view text);
  void click(CGEventType button);
  void select(const std::string& identifier);
  void announceEnabled();
  void setTrusted(bool trusted);
  void disableTap(CGEventType pseudoEvent);
  void announceToWorkspace(platform::Notification notification);
  [[nodiscard]] bool choose(const std::string& title);
  void wait(double seconds);

  /// What a program that has quit still holds, as text: nothing when it is in order.
  [[nodiscard]] static std::string leftovers();

  [[nodiscard]] bool hasEnded() const { return ended_; }
  [[nodiscard]] const AppDelegate& delegate() const { return *delegate_; }
  [[nodiscard]] macos::MacDesktop& desktop() { return *desktop_; }
  [[nodiscard]] FakeObjectiveCServices& services() { return services_; }
  [[nodiscard]] virtualdesktop::VirtualFiles& files() { return *files_; }
  [[nodiscard]] const virtualdesktop::TextField& textField() const { return textField_; }
  [[nodiscard]] std::string source();
  [[nodiscard]] std::vector<std::string> takePosted() { return std::exchange(posted_, {}); }
  [[nodiscard]] std::vector<std::string> takeDelivered() { return std::exchange(delivered_, {}); }
  /// The last posted events themselves, as they were when posted.
  struct Posted {
    CGEventType type;
    std::int64_t keyCode;
    std::int64_t autorepeat;
    std::int64_t userData;
    CGEventFlags flags;
    std::u16string text;
    std::optional<CGEventSourceStateID> sourceState;
  };
  std::vector<Posted> postedEvents;

 private:
  /// What a turn has asked of other threads is done before the next one.
  void waitForQueues() const;

  void send(CGEventType type, const Key& key);
  void deliver(const fakemac::Event& event);
  [[nodiscard]] const layouts::KeyTable& currentTable();

  FakeObjectiveCServices services_;
  virtualdesktop::VirtualFiles* files_ = nullptr;
  std::unique_ptr<macos::MacDesktop> desktop_;
  std::shared_ptr<AppDelegate> delegate_;
  virtualdesktop::TextField textField_;
  std::vector<std::string> posted_;
  std::vector<std::string> delivered_;
  bool launched_ = false;
  bool ended_ = false;
};

/// The key that types a character on the US layout; Space, Return, Tab and Backspace by their
/// control characters. Absent when none does.
[[nodiscard]] std::optional<layouts::KeyTable::Stroke> strokeFor(std::string_view character);

}  // namespace tessarok::macostest

#pragma once

#include <memory>
#include <vector>

#include "app/Status.h"
#include "platform/FileLock.h"
#include "platform/Menu.h"
#include "platform/Observation.h"
#include "platform/StatusItem.h"
#include "platform/Timer.h"

namespace tessarok {

/// Starts and stops everything, ticks every two seconds, owns the menu and the icon. One per
/// process; it outlives the event loop. Main thread only.
class AppDelegate final : public std::enable_shared_from_this<AppDelegate> {
 public:
  /// What a second running copy means.
  enum class Instances {
    /// Only one copy may run: two taps would fix every word twice.
    onlyOne,
    /// Any number may run, each with keys of its own, and beside the one of the other kind. One
    /// of them all writes what is learned, the others hand it over.
    many,
  };

  /// What the person's keys do during the launch.
  enum class Keys {
    /// They go to their applications, by this process, until it has a tap.
    passBy,
    /// They come through this process's main thread and wait for it.
    wait,
  };

  /// Whether words are put right automatically.
  enum class Correction { on, off };

  explicit AppDelegate(Instances instances = Instances::onlyOne, Keys keys = Keys::passBy);
  AppDelegate(const AppDelegate&) = delete;
  AppDelegate& operator=(const AppDelegate&) = delete;
  ~AppDelegate();

  /// Everything that happens once the event loop runs.
  void applicationDidFinishLaunching();
  /// Leaves nothing behind: keys flow as before and what was learned is on the disk.
  void applicationWillTerminate();

  /// Whether the keystroke tap is believed to be running.
  [[nodiscard]] bool tapRunning() const { return tapRunning_; }
  [[nodiscard]] Status status() const;

  // What the menu offers, for whoever speaks for the person in another way.

  void setCorrection(Correction correction);
  /// Asks the event loop to end the program.
  void quit();

 private:
  [[nodiscard]] bool olderInstanceRuns() const;
  [[nodiscard]] bool mayRun();
  void loadPersistentData();
  void warmUp();
  void waitForLists() const;
  void makeStatusItem();
  void observe();
  void observeInputSources();
  void contextChanged();
  void inputSourcesChanged();
  void startTap();
  void tick();
  void watchTap();

  [[nodiscard]] std::shared_ptr<platform::Menu> makeMenu();
  [[nodiscard]] std::shared_ptr<platform::Menu> makePackMenu();
  void toggleShiftFix(platform::MenuItem& sender);
  void togglePack(platform::MenuItem& sender);
  void openDictionary();
  void openSettings();
  void updateIcon();

  Instances instances_;
  Keys keys_;
  std::unique_ptr<platform::StatusItem> statusItem_;
  /// Null without an icon.
  std::shared_ptr<platform::MenuItem> enabledItem_;
  bool tapRunning_ = false;
  std::unique_ptr<platform::Timer> retryTimer_;
  /// Null when the lock is not held.
  std::unique_ptr<platform::FileLock> instanceLock_;
  std::vector<std::unique_ptr<platform::Observation>> workspaceObservers_;
  std::vector<std::unique_ptr<platform::Observation>> inputSourceObservers_;
};

}  // namespace tessarok

#pragma once

#include <filesystem>
#include <memory>
#include <optional>

#include "app/AppDelegate.h"
#include "desktops/virtual/TemporaryDirectory.h"
#include "desktops/virtual/VirtualDesktop.h"

namespace tessarok::virtualdesktop {

/// The whole program on a virtual desktop, from launch to quit. One per process, because the
/// program's state is the process's.
class Session {
 public:
  /// `home` is an existing directory; absent for a temporary one that is removed at the end.
  Session(std::optional<std::filesystem::path> home,
          std::optional<std::filesystem::path> resources);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  [[nodiscard]] VirtualDesktop& desktop() { return desktop_; }
  [[nodiscard]] const AppDelegate& delegate() const { return *delegate_; }

  /// Does what happens when the application has launched.
  void launch();
  /// Ends the application if it asked to be ended; called after every turn.
  void endIfAsked();
  void quit();
  [[nodiscard]] bool hasEnded() const { return ended_; }

 private:
  std::unique_ptr<TemporaryDirectory> temporaryHome_;
  VirtualDesktop desktop_;
  std::shared_ptr<AppDelegate> delegate_;
  bool launched_ = false;
  bool ended_ = false;
};

}  // namespace tessarok::virtualdesktop

#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/desktops/x11/Patience.h"
#include "tests/desktops/x11/Subprocess.h"
#include "tests/desktops/x11/XServer.h"

namespace tessarok::testing {

/// A window of an application, and what was typed into it.
class Application {
 public:
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;
  virtual ~Application() = default;

  /// Everything typed so far, as far as the application hands it out.
  [[nodiscard]] std::string text() const;
  /// Waits until the text is this, as long as it changes within so many seconds.
  [[nodiscard]] bool shows(const std::string& expected, double patience = kPatience) const;
  /// Types go here.
  void focus() { server_.focus(window_); }

 protected:
  explicit Application(XServer& server) : server_(server) {}
  void start(const std::vector<std::string>& command, const std::string& package);
  /// For an application that has the focus before it takes keys, and loses those that come too
  /// early: types until something is shown, and erases it.
  void waitForKeys();
  [[nodiscard]] const std::filesystem::path& folder() const { return folder_.path(); }
  [[nodiscard]] std::filesystem::path file() const { return folder() / "text"; }

 private:
  virtualdesktop::TemporaryDirectory folder_;
  XServer& server_;
  std::unique_ptr<Subprocess> program_;
  unsigned long window_ = 0;
};

/// A terminal whose lines go into a file when they end; until then they can be edited.
class Xterm final : public Application {
 public:
  explicit Xterm(XServer& server);
};

/// A text entry of the GTK toolkit. Its text follows the lines that were ended with Return.
class GtkEntry final : public Application {
 public:
  explicit GtkEntry(XServer& server);
};

/// A window whose program is slow to erase; see `BusyEntryProgram.cpp`.
class BusyEntry final : public Application {
 public:
  enum class Kind {
    /// It loses keys behind a Backspace.
    busy,
    /// It does not answer the pings that it says it answers.
    silent,
    /// It looks at its keys once a frame, and drops those that come as a repetition does.
    frames,
  };

  BusyEntry(XServer& server, Kind kind);
};

}  // namespace tessarok::testing

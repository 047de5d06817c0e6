#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/desktops/x11/Subprocess.h"
#include "tests/desktops/x11/XServer.h"

namespace tessarok::testing {

/// The built program on an X server, with the word data of the tests.
class Tessarok {
 public:
  struct Setup {
    /// The content of the settings file; empty for none.
    std::string settings;
    /// Another program's home; empty for one of its own.
    std::filesystem::path home;
    /// Besides those that keep it away from the session that the tests run in.
    std::map<std::string, std::string> environment = {};
    /// The terminal that it is started in; -1 for none.
    int terminal = -1;
    /// Where standard error goes; empty for a file of its own.
    std::filesystem::path errors = {};
  };

  /// Ready to correct.
  explicit Tessarok(XServer& server);
  Tessarok(XServer& server, const Setup& setup);
  /// Ends all of it.
  ~Tessarok();

  /// Whether it has said this on standard error; waits for it.
  [[nodiscard]] bool says(std::string_view text) const;
  [[nodiscard]] std::string errors() const;
  /// To the process that was started, which watches over the worker.
  void send(int signal) const { program_->send(signal); }
  void sendToWorker(int signal) const;
  [[nodiscard]] int exitStatus() { return program_->exitStatus(); }
  [[nodiscard]] pid_t process() const { return program_->process(); }
  /// The process that holds the keyboards; 0 while there is none.
  [[nodiscard]] pid_t worker() const;
  [[nodiscard]] const std::filesystem::path& home() const { return home_; }
  /// The folder with what was learned.
  [[nodiscard]] std::filesystem::path learned() const {
    return home_ / ".local" / "share" / "Tessarok";
  }

 private:
  virtualdesktop::TemporaryDirectory folder_;
  std::filesystem::path home_;
  std::filesystem::path errors_;
  std::unique_ptr<Subprocess> program_;
};

}  // namespace tessarok::testing

#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/Corrector.h"
#include "desktops/freedesktop/Bus.h"
#include "desktops/freedesktop/SessionContact.h"
#include "desktops/inputmethod/FrameworkApplication.h"
#include "desktops/inputmethod/KeyFlow.h"
#include "platform/Desktop.h"
#include "platform/SerialQueue.h"

namespace tessarok::inputmethod {

/// Starts the corrector inside a framework's process as soon as no other copy sits on this desktop,
/// and ends it when it asks for that, after which keys pass without it. Main thread.
class CorrectorLife final {
 public:
  /// All outlive this object. The desktop is the one in use.
  struct Parts {
    platform::Desktop& desktop;
    FrameworkApplication& application;
    KeyFlow& flow;
    /// Null without a session bus.
    freedesktop::Bus* session;
  };
  /// What only the framework's side knows. Everything is called on the main thread.
  struct Framework {
    /// Its name, such as "fcitx5".
    std::string name;
    /// What does not work here and why, a sentence each.
    std::function<std::vector<std::string>()> obstacles;
    /// The file that an upgrade replaces; absent where it is not known.
    std::optional<std::filesystem::path> program;
    /// Whether it is far enough for the corrector to start.
    std::function<bool()> isReady;
    std::function<void()> onStarted;
    /// No key is to come any more.
    std::function<void()> onEnding;
    std::function<void(const std::string& reason)> onFailure;
  };

  CorrectorLife(const Parts& parts, Framework framework);
  CorrectorLife(const CorrectorLife&) = delete;
  CorrectorLife& operator=(const CorrectorLife&) = delete;
  ~CorrectorLife() { stop(); }

  void launch();
  void stop();
  [[nodiscard]] bool isRunning() const { return corrector_ != nullptr; }

 private:
  void tryAgainLater();

  Parts parts_;
  Framework framework_;
  /// Ends behind the corrector: a disk that it waits for must not keep that from ending.
  std::unique_ptr<platform::SerialQueue> diskQueue_;
  std::unique_ptr<Corrector> corrector_;
  /// Absent while the corrector is.
  std::optional<freedesktop::SessionContact> contact_;
  bool hasStopped_ = false;
  int tries_ = 0;
};

}  // namespace tessarok::inputmethod

#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "app/AppDelegate.h"
#include "desktops/freedesktop/Bus.h"
#include "desktops/freedesktop/Notice.h"
#include "desktops/freedesktop/RemoteControl.h"
#include "desktops/posix/ReplacedFile.h"
#include "platform/RunLoop.h"
#include "platform/SerialQueues.h"
#include "platform/SystemLog.h"
#include "platform/Timer.h"
#include "platform/UserDefaults.h"

namespace tessarok::freedesktop {

/// What the running corrector of a desktop tells the person by itself, and what they may ask of it.
/// Main thread.
///
/// - At the very first start a notification says what happens from now on; it is remembered in the
///   settings that it was shown.
/// - When the program's file is replaced, as by an upgrade, one notification and one line in the
/// log
///   say so.
/// - The rest is `RemoteControl`.
class SessionContact final {
 public:
  /// Seconds between two looks at the program's file, and how late one may be.
  static constexpr double kLookInterval = 60;
  static constexpr double kLookTolerance = 30;
  /// True in the settings once the first start has been explained.
  static constexpr const char* kWelcomedKey = "welcomed";

  /// All outlive the object.
  struct Surroundings {
    /// Null without a session bus: then nobody asks, and nothing is shown.
    Bus* session;
    platform::RunLoop& loop;
    platform::SerialQueues& queues;
    platform::SystemLog& log;
    platform::UserDefaults& settings;
    AppDelegate& delegate;
  };

  /// `program` is the file that an upgrade replaces; absent where it is not known.
  SessionContact(const Surroundings& surroundings, RemoteControl::Desktop desktop,
                 const std::optional<std::filesystem::path>& program);
  SessionContact(const SessionContact&) = delete;
  SessionContact& operator=(const SessionContact&) = delete;
  ~SessionContact();

 private:
  void welcome();
  void look();
  void sayReplaced();

  Surroundings surroundings_;
  Notice notice_;
  std::optional<RemoteControl> control_;
  std::optional<posix::ReplacedFile> program_;
  std::unique_ptr<platform::Timer> timer_;
  std::shared_ptr<SessionContact*> self_ = std::make_shared<SessionContact*>(this);
  /// Looks at the file, because a disk may take its time. Goes first.
  std::unique_ptr<platform::SerialQueue> queue_;
};

}  // namespace tessarok::freedesktop

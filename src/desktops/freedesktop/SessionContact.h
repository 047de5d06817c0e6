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
#include "platform/SerialQueue.h"
#include "platform/SystemLog.h"
#include "platform/Timer.h"
#include "platform/UserDefaults.h"

namespace tessarok::freedesktop {

/// What the running corrector of a desktop tells the person by itself, and what they may ask of it.
/// Main thread.
///
/// - When words are put right for the very first time from now on, a notification says so. That it
///   was shown is remembered beside the person's lists, and in the settings; where the first cannot
///   be written it is not shown.
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
  /// The file in the per-user folder that says the same. Hidden, because people look into it.
  static constexpr const char* kWelcomedFile = ".welcomed";
  /// Seconds between two looks whether words are put right by now, and how late one may be.
  static constexpr double kBeginningInterval = 5;
  static constexpr double kBeginningTolerance = 5;

  /// All outlive the object.
  struct Surroundings {
    /// Null without a session bus: then nobody asks, and nothing is shown.
    Bus* session;
    platform::RunLoop& loop;
    /// Looks at files, because a disk may take its time. Whoever ends it waits for that, so it ends
    /// when no key is held any more.
    platform::SerialQueue& queue;
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
  void awaitCorrection();
  void welcomeIfCorrecting();
  void welcome(bool isFirst);
  void look();
  void sayReplaced();

  Surroundings surroundings_;
  Notice notice_;
  std::optional<RemoteControl> control_;
  /// Null where it is not known. A look at it may still be waited for when this object has gone.
  std::shared_ptr<posix::ReplacedFile> program_;
  std::unique_ptr<platform::Timer> timer_;
  std::unique_ptr<platform::Timer> beginning_;
  bool isWelcoming_ = false;
  std::shared_ptr<SessionContact*> self_ = std::make_shared<SessionContact*>(this);
};

}  // namespace tessarok::freedesktop

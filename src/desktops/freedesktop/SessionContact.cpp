#include "desktops/freedesktop/SessionContact.h"

#include <utility>

#include "desktops/posix/Translation.h"
#include "platform/Desktop.h"
#include "words/UserDict.h"

namespace tessarok::freedesktop {

namespace {

std::filesystem::path welcomedFile() {
  return UserDict::directory() / SessionContact::kWelcomedFile;
}

/// Notes that the first start has been explained; whether that was not known and is noted now.
bool noteWelcome() {
  auto& files = platform::desktop().files();
  const auto file = welcomedFile();
  if (files.exists(file)) return false;
  // A folder that cannot be made shows when the file is written.
  static_cast<void>(files.createDirectories(file.parent_path()));
  return !files.writeAtomically(file, "");
}

void forgetWelcome() {
  static_cast<void>(platform::desktop().files().remove(welcomedFile()));
}

bool isCorrecting(const Status& status) {
  return status.works() && status.enabled && status.hasWordData;
}

}  // namespace

SessionContact::SessionContact(const Surroundings& surroundings, RemoteControl::Desktop desktop,
                               const std::optional<std::filesystem::path>& program)
    : surroundings_(surroundings), notice_(surroundings.session, surroundings.log) {
  if (surroundings.session != nullptr) {
    control_.emplace(*surroundings.session, surroundings.loop, surroundings.delegate,
                     std::move(desktop));
    awaitCorrection();
  }
  if (!program) return;
  program_ = std::make_shared<posix::ReplacedFile>(*program);
  timer_ = surroundings.loop.repeating(kLookInterval, kLookTolerance, [this] { look(); });
}

SessionContact::~SessionContact() = default;

void SessionContact::awaitCorrection() {
  if (surroundings_.settings.boolean(kWelcomedKey).value_or(false)) return;
  beginning_ = surroundings_.loop.repeating(kBeginningInterval, kBeginningTolerance,
                                            [this] { welcomeIfCorrecting(); });
  welcomeIfCorrecting();
}

void SessionContact::welcomeIfCorrecting() {
  if (isWelcoming_ || !isCorrecting(surroundings_.delegate.status())) return;
  isWelcoming_ = true;
  surroundings_.queue.async(
      [&loop = surroundings_.loop, weak = std::weak_ptr<SessionContact*>(self_)] {
        // Before it is shown: what cannot be noted would be shown at every start.
        const bool isFirst = noteWelcome();
        loop.async([weak, isFirst] {
          if (const auto self = weak.lock()) (*self)->welcome(isFirst);
        });
      });
}

void SessionContact::welcome(bool isFirst) {
  beginning_.reset();
  if (!isFirst) return;
  notice_.offer(
      posix::translated("Tessarok corrects what you type"),
      posix::translated("A word typed in the wrong layout is put right at its end: ghbdtn becomes "
                        "привет.\n"
                        "Alt+Space takes a correction back; the icon's menu, or \"tessarok off\", "
                        "switches Tessarok off."),
      [this](bool isShown) {
        if (isShown) return surroundings_.settings.setBoolean(kWelcomedKey, true);
        // A session that shows notifications is waited for.
        surroundings_.queue.async(&forgetWelcome);
      });
}

void SessionContact::look() {
  surroundings_.queue.async([program = program_, &loop = surroundings_.loop,
                             weak = std::weak_ptr<SessionContact*>(self_)] {
    if (!program->isReplaced()) return;
    loop.async([weak] {
      if (const auto self = weak.lock()) (*self)->sayReplaced();
    });
  });
}

void SessionContact::sayReplaced() {
  // Two looks may have seen it.
  if (!std::exchange(timer_, nullptr)) return;
  surroundings_.log.write(
      "Tessarok: " +
      posix::translated("a new version is installed; it is used from the next start on"));
  notice_.offer("Tessarok",
                posix::translated("A new version is installed. It is used from the next start on."),
                nullptr);
}

}  // namespace tessarok::freedesktop

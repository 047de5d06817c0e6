#include "desktops/freedesktop/SessionContact.h"

#include <utility>

#include "desktops/posix/Translation.h"

namespace tessarok::freedesktop {

SessionContact::SessionContact(const Surroundings& surroundings, RemoteControl::Desktop desktop,
                               const std::optional<std::filesystem::path>& program)
    : surroundings_(surroundings), notice_(surroundings.session, surroundings.log) {
  if (surroundings.session != nullptr) {
    control_.emplace(*surroundings.session, surroundings.loop, surroundings.delegate,
                     std::move(desktop));
    welcome();
  }
  if (!program) return;
  program_.emplace(*program);
  queue_ = surroundings.queues.create("app.tessarok.program");
  timer_ = surroundings.loop.repeating(kLookInterval, kLookTolerance, [this] { look(); });
}

SessionContact::~SessionContact() = default;

void SessionContact::welcome() {
  auto& settings = surroundings_.settings;
  if (settings.boolean(kWelcomedKey).value_or(false)) return;
  notice_.offer(
      posix::translated("Tessarok corrects what you type"),
      posix::translated("A word typed in the wrong layout is put right at its end: ghbdtn becomes "
                        "привет.\n"
                        "Alt+Space takes a correction back; the icon's menu, or \"tessarok off\", "
                        "switches Tessarok off."),
      [&settings] { settings.setBoolean(kWelcomedKey, true); });
}

void SessionContact::look() {
  queue_->async([&program = *program_, &loop = surroundings_.loop,
                 weak = std::weak_ptr<SessionContact*>(self_)] {
    if (!program.isReplaced()) return;
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

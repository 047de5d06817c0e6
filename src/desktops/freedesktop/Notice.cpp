#include "desktops/freedesktop/Notice.h"

#include <utility>

namespace tessarok::freedesktop {

namespace {

constexpr const char* kService = "org.freedesktop.Notifications";
constexpr const char* kPath = "/org/freedesktop/Notifications";
/// Leaves it to the desktop how long the notice stays.
constexpr int kUsualTime = -1;

}  // namespace

bool Notice::send(const std::string& summary, const std::string& body,
                  std::function<void(bool isShown)> answered) {
  auto message = session_ != nullptr ? session_->methodCall(kService, kPath, kService, "Notify")
                                     : BusMessage();
  if (!message) return false;
  sd_bus_message_append(message.get(), "susssasa{sv}i", "Tessarok", shown_, "tessarok",
                        summary.c_str(), body.c_str(), 0, 0, kUsualTime);
  answer_ = session_->call(
      std::move(message), [this, answered = std::move(answered)](sd_bus_message& reply) {
        const bool isShown = sd_bus_message_is_method_error(&reply, nullptr) == 0;
        if (isShown) sd_bus_message_read(&reply, "u", &shown_);
        answered(isShown);
      });
  return static_cast<bool>(answer_);
}

void Notice::show(const std::string& summary, const std::string& body) {
  const auto log = [this, logged = "Tessarok: " + summary + ": " + body] { log_.write(logged); };
  const bool isSent = send(summary, body, [log](bool isShown) {
    if (!isShown) log();
  });
  if (!isSent) log();
}

void Notice::offer(const std::string& summary, const std::string& body,
                   const std::function<void(bool isShown)>& answered) {
  const auto tell = [answered](bool isShown) {
    if (answered) answered(isShown);
  };
  if (!send(summary, body, tell)) tell(false);
}

}  // namespace tessarok::freedesktop

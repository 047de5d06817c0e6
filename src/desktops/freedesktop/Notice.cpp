#include "desktops/freedesktop/Notice.h"

namespace tessarok::freedesktop {

namespace {

constexpr const char* kService = "org.freedesktop.Notifications";
constexpr const char* kPath = "/org/freedesktop/Notifications";
/// Leaves it to the desktop how long the notice stays.
constexpr int kUsualTime = -1;

}  // namespace

void Notice::show(const std::string& summary, const std::string& body) {
  const auto logged = "Tessarok: " + summary + ": " + body;
  auto message = session_ != nullptr ? session_->methodCall(kService, kPath, kService, "Notify")
                                     : BusMessage();
  if (!message) {
    log_.write(logged);
    return;
  }
  sd_bus_message_append(message.get(), "susssasa{sv}i", "Tessarok", shown_, "tessarok",
                        summary.c_str(), body.c_str(), 0, 0, kUsualTime);
  answer_ = session_->call(std::move(message), [this, logged](sd_bus_message& reply) {
    if (sd_bus_message_is_method_error(&reply, nullptr) != 0) {
      log_.write(logged);
    } else {
      sd_bus_message_read(&reply, "u", &shown_);
    }
  });
  if (!answer_) log_.write(logged);
}

}  // namespace tessarok::freedesktop

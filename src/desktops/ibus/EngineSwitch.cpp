#include "desktops/ibus/EngineSwitch.h"

#include <utility>

#include "desktops/ibus/ShellExtension.h"

namespace tessarok::ibus {

namespace {

/// Milliseconds for an answer.
constexpr int kPatience = 2000;

/// Whether the shell's name has no owner: another desktop.
bool isNobodyThere(const sd_bus_error& error) {
  return sd_bus_error_has_name(&error, SD_BUS_ERROR_SERVICE_UNKNOWN) != 0 ||
         sd_bus_error_has_name(&error, SD_BUS_ERROR_NAME_HAS_NO_OWNER) != 0;
}

}  // namespace

void EngineSwitch::to(const std::string& engine) {
  auto message =
      session_ == nullptr ? freedesktop::BusMessage() : shellExtension::call(*session_, "Activate");
  if (!message) return byIbus(engine);
  sd_bus_message_append(message.get(), "ss", "ibus", engine.c_str());
  call_ = session_->call(std::move(message),
                         [this, engine](sd_bus_message& reply) { answered(reply, engine); });
  if (!call_) byIbus(engine);
}

void EngineSwitch::answered(sd_bus_message& reply, const std::string& engine) {
  const auto* error = sd_bus_message_get_error(&reply);
  lacksExtension_ = false;
  if (error == nullptr) {
    int isDone = 0;
    if (sd_bus_message_read(&reply, "b", &isDone) >= 0 && isDone != 0) return;
    if (onRefused) onRefused();
    return;
  }
  if (isNobodyThere(*error)) return byIbus(engine);
  lacksExtension_ = true;
  // The list of sources in the settings would do it too, but the shell loses keys while it reads
  // that.
  if (onRefused) onRefused();
}

void EngineSwitch::byIbus(const std::string& engine) {
  ibus_bus_set_global_engine_async(&bus_, engine.c_str(), kPatience, nullptr, nullptr, nullptr);
}

}  // namespace tessarok::ibus

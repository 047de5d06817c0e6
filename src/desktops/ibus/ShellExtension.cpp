#include "desktops/ibus/ShellExtension.h"

namespace tessarok::ibus {

namespace {

constexpr const char* kShell = "org.gnome.Shell";
constexpr const char* kName = "app.tessarok.InputSources";
constexpr const char* kPath = "/app/tessarok/InputSources";
constexpr const char* kInterface = "app.tessarok.InputSources1";

}  // namespace

ShellExtension::ShellExtension(freedesktop::Bus* session) : session_(session) {
  if (session == nullptr) return;
  const auto changed = [this] {
    if (onChange) onChange();
  };
  shell_ = std::make_unique<freedesktop::NameWatch>(*session, kShell, changed);
  extension_ = std::make_unique<freedesktop::NameWatch>(*session, kName, changed);
}

ShellExtension::State ShellExtension::state() const {
  if (session_ == nullptr) return State::noShell;
  if (extension_->isOwned().value_or(false)) return State::on;
  if (!shell_->isOwned() || !extension_->isOwned()) return State::unknown;
  return *shell_->isOwned() ? State::off : State::noShell;
}

freedesktop::BusMessage ShellExtension::call(const char* method) {
  if (session_ == nullptr) return {};
  auto message = session_->methodCall(kName, kPath, kInterface, method);
  if (message) sd_bus_message_set_auto_start(message.get(), 0);
  return message;
}

}  // namespace tessarok::ibus

#include "commands/DesktopControl.h"

#include <memory>
#include <string_view>
#include <systemd/sd-bus.h>

#include "desktops/freedesktop/BusMessage.h"
#include "desktops/freedesktop/RemoteControl.h"
#include "desktops/freedesktop/SessionKind.h"
#include "desktops/posix/ProcessEnvironment.h"
#include "desktops/posix/Translation.h"

namespace tessarok::commands {

namespace {

using freedesktop::BusMessage;
using freedesktop::RemoteControl;
using posix::translatable;

/// Microseconds for an answer.
constexpr std::uint64_t kPatience = 2'000'000;

struct BusClose {
  void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};

/// The session's bus, for one question that may be waited for.
std::unique_ptr<sd_bus, BusClose> openBus() {
  sd_bus* bus = nullptr;
  if (sd_bus_open_user(&bus) < 0) return nullptr;
  sd_bus_set_method_call_timeout(bus, kPatience);
  return std::unique_ptr<sd_bus, BusClose>(bus);
}

/// Null when nobody answers.
BusMessage call(sd_bus* bus, const char* interface, const char* member, const char* argument) {
  sd_bus_message* made = nullptr;
  if (bus == nullptr ||
      sd_bus_message_new_method_call(bus, &made, RemoteControl::kName, RemoteControl::kPath,
                                     interface, member) < 0) {
    return nullptr;
  }
  const BusMessage message(made);
  if (argument != nullptr && sd_bus_message_append(made, "s", argument) < 0) return nullptr;
  sd_bus_message* reply = nullptr;
  const int result = sd_bus_call(bus, made, kPatience, nullptr, &reply);
  return BusMessage(result < 0 ? nullptr : reply);
}

bool read(sd_bus_message* reply, std::string& text) {
  const char* value = nullptr;
  if (sd_bus_message_read(reply, "v", "s", &value) < 0) return false;
  text = value;
  return true;
}

bool read(sd_bus_message* reply, std::vector<std::string>& texts) {
  if (sd_bus_message_enter_container(reply, 'v', "as") < 0) return false;
  if (sd_bus_message_enter_container(reply, 'a', "s") < 0) return false;
  const char* value = nullptr;
  while (sd_bus_message_read_basic(reply, 's', &value) > 0)
    texts.emplace_back(value);
  return sd_bus_message_exit_container(reply) >= 0 && sd_bus_message_exit_container(reply) >= 0;
}

/// A later version may have more to tell.
bool readProperty(sd_bus_message* reply, std::string_view name, DesktopStatus& status) {
  if (name == "Version") return read(reply, status.version);
  if (name == "Desktop") return read(reply, status.desktop);
  if (name == "Correction") return read(reply, status.correction);
  if (name == "Layout") return read(reply, status.layout);
  if (name == "Layouts") return read(reply, status.layouts);
  if (name == "Obstacles") return read(reply, status.obstacles);
  if (name == "ProcessId") return sd_bus_message_read(reply, "v", "u", &status.process) >= 0;
  if (name == "Since") return sd_bus_message_read(reply, "v", "x", &status.since) >= 0;
  return sd_bus_message_skip(reply, "v") >= 0;
}

const char* memberFor(DesktopRequest request) {
  switch (request) {
    case DesktopRequest::on:
      return "On";
    case DesktopRequest::off:
      return "Off";
    case DesktopRequest::pause:
      return "Pause";
    case DesktopRequest::quit:
      break;
  }
  return "Quit";
}

}  // namespace

std::optional<DesktopStatus> askDesktop() {
  const auto bus = openBus();
  const auto reply =
      call(bus.get(), "org.freedesktop.DBus.Properties", "GetAll", RemoteControl::kInterface);
  if (!reply || sd_bus_message_enter_container(reply.get(), 'a', "{sv}") < 0) return std::nullopt;
  DesktopStatus status;
  while (sd_bus_message_enter_container(reply.get(), 'e', "sv") > 0) {
    const char* name = nullptr;
    if (sd_bus_message_read(reply.get(), "s", &name) < 0) return std::nullopt;
    if (!readProperty(reply.get(), name, status)) return std::nullopt;
    if (sd_bus_message_exit_container(reply.get()) < 0) return std::nullopt;
  }
  return status;
}

std::vector<std::string> obstaclesToDesktop() {
  posix::ProcessEnvironment environment;
  if (freedesktop::isWaylandSession(environment)) {
    if (freedesktop::isPlasmaSession(environment)) {
      return {translatable(
          "this is a Wayland session, and no Fcitx5 with the Tessarok addon runs in it: choose "
          "Fcitx 5 in System Settings, Virtual Keyboard, and give it an English and a Russian "
          "keyboard")};
    }
    if (freedesktop::isGnomeSession(environment)) {
      return {translatable(
          "this is GNOME on Wayland, and IBus runs no Tessarok: add English (Tessarok) and Russian "
          "(Tessarok) in Settings, Keyboard, Input Sources, and remove the others")};
    }
    return {translatable(
        "this is a Wayland session, and no Fcitx5 with the Tessarok addon runs in it: start "
        "fcitx5, with an English and a Russian keyboard among its input methods")};
  }
  if (environment.variable("DISPLAY").value_or("") != "") {
    return {translatable(
        "no corrector runs on this display: start tessarok, or log in anew when it is just "
        "installed")};
  }
  return {translatable("this session has no display: tessarok terminal corrects in a terminal")};
}

bool tellDesktop(DesktopRequest request) {
  const auto bus = openBus();
  return call(bus.get(), RemoteControl::kInterface, memberFor(request), nullptr) != nullptr;
}

}  // namespace tessarok::commands

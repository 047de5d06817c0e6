#include "commands/DesktopControl.h"

#include <memory>
#include <string_view>
#include <systemd/sd-bus.h>

#include "commands/InstalledParts.h"
#include "commands/JoinedText.h"
#include "desktops/freedesktop/BusMessage.h"
#include "desktops/freedesktop/RemoteControl.h"
#include "desktops/freedesktop/SessionKind.h"
#include "desktops/posix/PosixFiles.h"
#include "desktops/posix/ProcessApplication.h"
#include "desktops/posix/ProcessEnvironment.h"
#include "desktops/posix/Translation.h"
#include "words/FolderLock.h"

namespace tessarok::commands {

namespace {

using freedesktop::BusMessage;
using freedesktop::RemoteControl;
using posix::translated;

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

bool read(sd_bus_message* reply, bool& value) {
  int read = 0;
  if (sd_bus_message_read(reply, "v", "b", &read) < 0) return false;
  value = read != 0;
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
  if (name == "Enabled") return read(reply, status.isEnabled);
  if (name == "Layout") return read(reply, status.layout);
  if (name == "Layouts") return read(reply, status.layouts);
  if (name == "Obstacles") return read(reply, status.obstacles);
  if (name == "ProcessId") return sd_bus_message_read(reply, "v", "u", &status.process) >= 0;
  if (name == "Since") return sd_bus_message_read(reply, "v", "x", &status.since) >= 0;
  return sd_bus_message_skip(reply, "v") >= 0;
}

std::vector<std::string> obstaclesToFcitx(platform::Environment& environment) {
  const bool isPlasma = freedesktop::isPlasmaSession(environment);
  if (!isFcitxAddonInstalled() || !isProgramThere("fcitx5")) {
    return {isPlasma
                ? translated(
                      "this is a Wayland session, in which Tessarok works within Fcitx5, and it is "
                      "not installed there: install the package tessarok-fcitx5 and log in anew, "
                      "then choose Fcitx 5 in System Settings, Virtual Keyboard, and give it an "
                      "English and a Russian keyboard")
                : translated(
                      "this is a Wayland session, in which Tessarok works within Fcitx5, and it is "
                      "not installed there: install the package tessarok-fcitx5 and log in anew, "
                      "then start fcitx5, with an English and a Russian keyboard among its input "
                      "methods")};
  }
  return {
      isPlasma
          ? translated(
                "this is a Wayland session, and no Fcitx5 with the Tessarok addon runs in it: "
                "choose Fcitx 5 in System Settings, Virtual Keyboard, and give it an English "
                "and a Russian keyboard")
          : translated(
                "this is a Wayland session, and no Fcitx5 with the Tessarok addon runs in it: "
                "start fcitx5, with an English and a Russian keyboard among its input methods")};
}

std::vector<std::string> obstaclesToGnome() {
  if (!areIbusEnginesInstalled() || !isProgramThere("ibus-daemon")) {
    return {translated(
        "this is GNOME on Wayland, in which Tessarok works within IBus, and it is not installed "
        "there: install the packages tessarok-ibus and gnome-shell-extension-tessarok and log in "
        "anew, then add English (Tessarok) and Russian (Tessarok) in Settings, Keyboard, Input "
        "Sources, and remove the others")};
  }
  std::vector<std::string> all{translated(
      "this is GNOME on Wayland, and IBus runs no Tessarok: add English (Tessarok) and Russian "
      "(Tessarok) in Settings, Keyboard, Input Sources, and remove the others")};
  if (!isShellExtensionInstalled()) {
    all.push_back(translated(
        "the extension of GNOME's shell, without which switching the layout is left to you, is not "
        "installed: install the package gnome-shell-extension-tessarok"));
  }
  return all;
}

/// The process that holds the lock of the whole desktop; 0 when none does.
pid_t holderOfDesktop() {
  const auto folder = posix::PosixFiles::ofUser()->applicationSupportDirectory();
  if (!folder) return 0;
  return posix::ProcessApplication::holderOf(*folder / "Tessarok" / FolderLock::kInstance);
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
  if (const auto unreachable = unreachableDesktop()) return {*unreachable};
  posix::ProcessEnvironment environment;
  if (freedesktop::isWaylandSession(environment)) {
    return freedesktop::isGnomeSession(environment) ? obstaclesToGnome()
                                                    : obstaclesToFcitx(environment);
  }
  if (environment.variable("DISPLAY").value_or("") != "") {
    return {
        translated("no corrector runs on this display: start tessarok, or log in anew when it is "
                   "just installed")};
  }
  return {translated("this session has no display: tessarok terminal corrects in a terminal")};
}

bool isDesktopHeld() {
  return holderOfDesktop() > 0;
}

std::optional<std::string> unreachableDesktop() {
  const auto holder = holderOfDesktop();
  if (holder <= 0) return std::nullopt;
  const auto process = std::to_string(holder);
  return openBus()
             ? translated("a copy runs (process {1}), but does not answer on this session bus",
                          {process})
             : translated("a copy runs (process {1}), but cannot be reached without a session bus",
                          {process});
}

void showWhyNotStarted() {
  const auto bus = openBus();
  if (!bus) return;
  const auto body =
      askDesktop() ? translated("It runs already.") : joined(obstaclesToDesktop(), "\n");
  constexpr const char* kService = "org.freedesktop.Notifications";
  constexpr int kUsualTime = -1;
  sd_bus_call_method(bus.get(), kService, "/org/freedesktop/Notifications", kService, "Notify",
                     nullptr, nullptr, "susssasa{sv}i", "Tessarok", 0, "tessarok",
                     translated("Tessarok was not started").c_str(), body.c_str(), 0, 0,
                     kUsualTime);
}

bool tellDesktop(DesktopRequest request) {
  const auto bus = openBus();
  return call(bus.get(), RemoteControl::kInterface, memberFor(request), nullptr) != nullptr;
}

}  // namespace tessarok::commands

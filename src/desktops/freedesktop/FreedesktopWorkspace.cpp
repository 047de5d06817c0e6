#include "desktops/freedesktop/FreedesktopWorkspace.h"

#include <sstream>
#include <system_error>

#include "desktops/posix/Translation.h"

namespace tessarok::freedesktop {

namespace {

using posix::translated;

constexpr std::string_view kSystemSettings = "x-apple.systempreferences:";

/// The keyboard settings of each desktop, by its name in $XDG_CURRENT_DESKTOP.
struct Settings {
  std::string_view desktop;
  std::vector<std::vector<std::string>> programs;
};

const std::vector<Settings>& knownSettings() {
  static const std::vector<Settings> known{
      {"GNOME", {{"gnome-control-center", "keyboard"}}},
      {"Unity", {{"unity-control-center", "keyboard"}, {"gnome-control-center", "keyboard"}}},
      {"Budgie", {{"budgie-control-center", "keyboard"}, {"gnome-control-center", "keyboard"}}},
      {"KDE",
       {{"systemsettings", "kcm_keyboard"},
        {"systemsettings5", "kcm_keyboard"},
        {"kcmshell6", "kcm_keyboard"},
        {"kcmshell5", "kcm_keyboard"}}},
      {"XFCE", {{"xfce4-keyboard-settings"}}},
      {"MATE", {{"mate-keyboard-properties"}}},
      {"X-Cinnamon", {{"cinnamon-settings", "keyboard"}}},
      {"LXQt", {{"lxqt-config-input"}}},
      {"LXDE", {{"lxinput"}}},
  };
  return known;
}

std::string failureOf(const std::string& program, int status) {
  // What xdg-open's exit statuses mean.
  if (status == 2) return translated("the file is not there");
  if (status == 3) return translated("no program is set up for it");
  return translated("{1} ended with status {2}", {program, std::to_string(status)});
}

}  // namespace

void FreedesktopWorkspace::openFile(const std::filesystem::path& file) {
  openWithDefault(file.string());
}

void FreedesktopWorkspace::openUrl(std::string_view url) {
  if (url.starts_with(kSystemSettings)) {
    openSettings();
  } else {
    openWithDefault(std::string(url));
  }
}

void FreedesktopWorkspace::openWithDefault(const std::string& what) {
  const std::string program = "xdg-open";
  const int error = programs_.start({program, what}, [this, program, what](int status) {
    if (status != 0)
      notice_.show(translated("Cannot open {1}", {what}), failureOf(program, status));
  });
  if (error != 0) {
    notice_.show(translated("Cannot open {1}", {what}),
                 program + ": " + std::generic_category().message(error));
  }
}

void FreedesktopWorkspace::openSettings() {
  for (const auto& command : settingsPrograms()) {
    if (programs_.start(command, nullptr) == 0) return;
  }
  notice_.show(
      translated("No keyboard settings found"),
      translated("Tessarok needs no permission on this desktop. If its icon shows a warning, add a "
                 "Russian and a QWERTY layout where you set up your keyboard, and select one of "
                 "them."));
}

std::vector<FreedesktopWorkspace::Command> FreedesktopWorkspace::settingsPrograms() {
  std::istringstream desktops(environment_.variable("XDG_CURRENT_DESKTOP").value_or(""));
  for (std::string desktop; std::getline(desktops, desktop, ':');) {
    for (const auto& known : knownSettings()) {
      if (known.desktop == desktop) return known.programs;
    }
  }
  // A window manager without a desktop may have any of them installed.
  std::vector<Command> all;
  for (const auto& known : knownSettings()) {
    all.insert(all.end(), known.programs.begin(), known.programs.end());
  }
  return all;
}

}  // namespace tessarok::freedesktop

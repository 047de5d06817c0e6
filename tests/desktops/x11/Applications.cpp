#include "tests/desktops/x11/Applications.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace tessarok::testing {

namespace {

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

void Application::start(const std::vector<std::string>& command, const std::string& package) {
  const auto before = server_.windows();
  Subprocess::Setup setup;
  // Nothing of the session that the tests run in.
  setup.environment = {{"DISPLAY", server_.name()}, {"HOME", folder().string()},
                       {"LC_ALL", "C.UTF-8"},       {"LANG", "C.UTF-8"},
                       {"NO_AT_BRIDGE", "1"},       {"GSETTINGS_BACKEND", "memory"},
                       {"GDK_BACKEND", "x11"},      {"GTK_IM_MODULE", "gtk-im-context-simple"},
                       {"XMODIFIERS", ""},          {"DBUS_SESSION_BUS_ADDRESS", ""},
                       {"WAYLAND_DISPLAY", ""}};
  program_ = std::make_unique<Subprocess>(command, package, setup);
  const bool appeared = waitUntil([&] {
    for (const auto window : server_.windows()) {
      if (std::find(before.begin(), before.end(), window) == before.end()) window_ = window;
    }
    return window_ != 0 && std::filesystem::exists(file());
  });
  if (!appeared) throw std::runtime_error(command.front() + " shows no window");
  focus();
}

void Application::waitForKeys() {
  constexpr double kNextTry = 0.5;
  const bool takesKeys = waitUntil([this] {
    server_.type("a");
    return waitUntil([this] { return !text().empty(); }, kNextTry);
  });
  // Behind this one no earlier key can come any more.
  server_.type("z");
  const bool hasAll = waitUntil([this] { return text().ends_with('z'); });
  if (!takesKeys || !hasAll) throw std::runtime_error("the application takes no keys");
  server_.type(std::string(text().size(), '\b'));
  if (!shows("")) throw std::runtime_error("the application does not erase \"" + text() + "\"");
}

std::string Application::text() const {
  return contentOf(file());
}

bool Application::shows(const std::string& expected, double patience) const {
  return waitUntilGives([this] { return text(); }, expected, patience);
}

Xterm::Xterm(XServer& server) : Application(server) {
  const auto script = "stty iutf8 erase '^?'; exec cat >'" + file().string() + "'";
  start({"xterm", "-u8", "-xrm", "*backarrowKey: false", "-xrm", "*ptyInitialErase: false", "-e",
         "sh", "-c", script},
        "xterm");
}

GtkEntry::GtkEntry(XServer& server) : Application(server) {
  start({TESSAROK_GTK_ENTRY, file().string()}, "libgtk-3-dev");
}

#ifdef TESSAROK_BUSY_ENTRY
BusyEntry::BusyEntry(XServer& server, Kind kind) : Application(server) {
  std::vector<std::string> command{TESSAROK_BUSY_ENTRY, file().string()};
  if (kind == Kind::silent) command.emplace_back("silent");
  if (kind == Kind::frames) command.emplace_back("frames");
  start(command, "libx11-dev");
}
#endif

}  // namespace tessarok::testing

#include "tests/desktops/x11/Tessarok.h"

#include <csignal>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "tests/desktops/x11/Patience.h"
#include "tests/support/Signals.h"

namespace tessarok::testing {

Tessarok::Tessarok(XServer& server) : Tessarok(server, Setup()) {
  if (!says("correcting in every application")) {
    throw std::runtime_error("tessarok does not start: " + errors());
  }
}

Tessarok::Tessarok(XServer& server, const Setup& setup)
    : home_(setup.home.empty() ? folder_.path() : setup.home),
      errors_(setup.errors.empty() ? folder_.path() / "errors" : setup.errors) {
  if (!setup.settings.empty()) {
    const auto folder = home_ / ".config" / "Tessarok";
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "settings.json") << setup.settings;
  }
  Subprocess::Setup subprocess;
  subprocess.errors = errors_;
  subprocess.terminal = setup.terminal;
  subprocess.environment = {{"DISPLAY", server.name()},
                            {"HOME", home_.string()},
                            {"XDG_DATA_HOME", ""},
                            {"XDG_CONFIG_HOME", ""},
                            {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"},
                            {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent"},
                            {"WAYLAND_DISPLAY", ""}};
  for (const auto& [name, value] : setup.environment)
    subprocess.environment[name] = value;
  program_ = std::make_unique<Subprocess>(
      std::vector<std::string>{TESSAROK_PROGRAM, "--resources", TESSAROK_TEST_DATA}, "tessarok",
      subprocess);
}

Tessarok::~Tessarok() {
  // Without its watchdog the worker would end by itself, but not before this folder is removed.
  sendToWorker(SIGKILL);
}

pid_t Tessarok::worker() const {
  const auto process = std::to_string(program_->process());
  pid_t child = 0;
  std::ifstream("/proc/" + process + "/task/" + process + "/children") >> child;
  return child;
}

void Tessarok::sendToWorker(int signal) const {
  sendSignal(worker(), signal);
}

std::string Tessarok::errors() const {
  std::ifstream in(errors_, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

bool Tessarok::says(std::string_view text) const {
  return waitUntil([&] { return errors().find(text) != std::string::npos; });
}

}  // namespace tessarok::testing

#include "fcitx5/SwaySession.h"

#include <filesystem>
#include <pwd.h>
#include <stdexcept>
#include <unistd.h>

#include "support/TestFiles.h"
#include "x11/Patience.h"

namespace tessarok::testing {

namespace {

namespace fs = std::filesystem;

constexpr const char* kUser = "nobody";
constexpr const char* kConfiguration =
    "output * resolution 800x600\n"
    "default_border none\n"
    "xwayland disable\n";

/// `command` as the user without rights.
std::vector<std::string> asNobody(const std::vector<std::string>& command) {
  // A change of the user takes back what ends a program with the test.
  std::vector<std::string> line{"setpriv",        "--reuid",     kUser,  "--regid", "nogroup",
                                "--clear-groups", "--pdeathsig", "KILL", "--"};
  line.insert(line.end(), command.begin(), command.end());
  return line;
}

void giveToNobody(const fs::path& folder) {
  const auto* user = ::getpwnam(kUser);
  if (user == nullptr) throw std::runtime_error("there is no user nobody");
  const auto give = [&](const fs::path& file) {
    if (::lchown(file.c_str(), user->pw_uid, user->pw_gid) != 0) {
      throw std::runtime_error("cannot give " + file.string() + " to nobody");
    }
  };
  give(folder);
  for (const auto& entry : fs::recursive_directory_iterator(folder))
    give(entry.path());
}

}  // namespace

std::string SwaySession::obstacle() {
  if (::geteuid() != 0) return {};
  for (const char* file : {TESSAROK_GTK_ENTRY, TESSAROK_FCITX5_DATA, TESSAROK_TEST_DATA}) {
    Subprocess look(asNobody({"test", "-r", file}), "util-linux", {});
    if (look.exitStatus() != 0) {
      return std::string("sway does not run as root, and the user nobody cannot read ") + file;
    }
  }
  return {};
}

std::vector<std::string> SwaySession::inSession(std::vector<std::string> command) const {
  return ::geteuid() == 0 ? asNobody(command) : command;
}

SwaySession::SwaySession() {
  const auto run = home().path() / "run";
  const auto configuration = home().path() / "sway";
  writeFile(configuration, kConfiguration);
  writeFile(home().path() / "messages", "");
  if (::geteuid() == 0) giveToNobody(home().path());
  environment_ = {{"WLR_BACKENDS", "headless"}, {"WLR_LIBINPUT_NO_DEVICES", "1"},
                  {"WLR_RENDERER", "pixman"},   {"GDK_BACKEND", "wayland"},
                  {"GTK_IM_MODULE", "wayland"}, {"GSETTINGS_BACKEND", "memory"},
                  {"NO_AT_BRIDGE", "1"}};
  sway_ = start({"sway", "-c", configuration.string()}, "sway");
  std::string socket;
  const bool isUp = waitUntil([&] {
    for (const auto& entry : fs::directory_iterator(run)) {
      const auto name = entry.path().filename().string();
      if (name.starts_with("wayland-") && !name.ends_with(".lock")) socket = entry.path().string();
    }
    return !socket.empty();
  });
  if (!isUp) throw std::runtime_error("sway does not start:\n" + messages());
  environment_["WAYLAND_DISPLAY"] = fs::path(socket).filename().string();
  keyboard_ = std::make_unique<VirtualKeyboard>(socket);
  addons_ = "wayland,waylandim";
  startFcitx();
}

SwaySession::~SwaySession() = default;

}  // namespace tessarok::testing

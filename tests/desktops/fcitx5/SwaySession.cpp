#include "tests/desktops/fcitx5/SwaySession.h"

#include <cstdlib>
#include <filesystem>
#include <grp.h>
#include <pwd.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/desktops/x11/Patience.h"
#include "tests/support/TestFiles.h"

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

/// Copies what the programs of the session read to where nobody can read it, which need not be so
/// for the checkout.
void copyForNobody(const fs::path& home) {
  const fs::path data = TESSAROK_FCITX5_DATA;
  const auto copyFolder = [&](const fs::path& from, const char* to) {
    fs::copy(from, home / to, fs::copy_options::recursive);
  };
  copyFolder(data, "fcitx5-data");
  copyFolder(data.parent_path() / "lib", "fcitx5-lib");
  copyFolder(TESSAROK_TEST_DATA, "words");
  fs::copy(TESSAROK_GTK_ENTRY, home / "entry");
  const auto libraries = (data.parent_path() / "lib").string();
  for (const auto& entry : fs::directory_iterator(home / "fcitx5-data" / "addon")) {
    auto text = readFile(entry.path());
    if (const auto at = text.find(libraries); at != std::string::npos) {
      text.replace(at, libraries.size(), (home / "fcitx5-lib").string());
    }
    writeFile(entry.path(), text);
  }
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

/// In a process of its own: becomes the user of the session and makes a file there.
bool canShareMemory() {
  const auto* user = ::getpwnam(kUser);
  if (::geteuid() == 0) {
    const bool isUser = user != nullptr && ::setgroups(0, nullptr) == 0 &&
                        ::setgid(user->pw_gid) == 0 && ::setuid(user->pw_uid) == 0;
    if (!isUser) return false;
  }
  char name[] = "/dev/shm/tessarok.XXXXXX";
  return ::mkstemp(name) >= 0 && ::unlink(name) == 0;
}

}  // namespace

std::optional<std::string> SwaySession::obstacle() {
  const auto child = ::fork();
  if (child == 0) ::_exit(canShareMemory() ? 0 : 1);
  int status = 0;
  if (child > 0 && ::waitpid(child, &status, 0) == child && status == 0) return std::nullopt;
  return "programs of a Wayland session share memory, and /dev/shm cannot be written by an "
         "ordinary "
         "user";
}

std::vector<std::string> SwaySession::inSession(std::vector<std::string> command) const {
  return ::geteuid() == 0 ? asNobody(command) : command;
}

SwaySession::SwaySession() {
  const auto run = home().path() / "run";
  const auto configuration = home().path() / "sway";
  writeFile(configuration, kConfiguration);
  writeFile(home().path() / "messages", "");
  environment_ = {{"WLR_BACKENDS", "headless"}, {"WLR_LIBINPUT_NO_DEVICES", "1"},
                  {"WLR_RENDERER", "pixman"},   {"GDK_BACKEND", "wayland"},
                  {"GTK_IM_MODULE", "wayland"}, {"GSETTINGS_BACKEND", "memory"},
                  {"NO_AT_BRIDGE", "1"}};
  if (::geteuid() == 0) {
    copyForNobody(home().path());
    giveToNobody(home().path());
    const auto inside = [this](const char* name) { return (home().path() / name).string(); };
    entryProgram_ = inside("entry");
    environment_["FCITX_DATA_DIRS"] =
        inside("fcitx5-data") + ":/usr/share/fcitx5/testing:/usr/share/fcitx5";
    environment_["TESSAROK_RES"] = inside("words");
  }
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
  // The socket is there before the compositor listens.
  const bool isConnected = waitUntil([&] {
    keyboard_ = VirtualKeyboard::connect(socket);
    return keyboard_ != nullptr;
  });
  if (!isConnected) throw std::runtime_error("sway does not answer:\n" + messages());
  addons_ = "wayland,waylandim";
  startFcitx();
}

SwaySession::~SwaySession() = default;

}  // namespace tessarok::testing

#include "tests/desktops/fcitx5/FcitxProcess.h"

#include "tests/desktops/x11/Subprocess.h"
#include "tests/support/TestFiles.h"

namespace tessarok::testing {

namespace {

std::string profile(const std::vector<std::string>& inputMethods) {
  std::string text =
      "[Groups/0]\nName=Default\nDefault Layout=us\nDefaultIM=" + inputMethods.back() + "\n\n";
  for (std::size_t i = 0; i < inputMethods.size(); ++i) {
    text += "[Groups/0/Items/" + std::to_string(i) + "]\nName=" + inputMethods[i] + "\nLayout=\n\n";
  }
  return text + "[GroupOrder]\n0=Default\n";
}

}  // namespace

FcitxHome::FcitxHome(const std::vector<std::string>& inputMethods) {
  writeFile(path() / "config" / "fcitx5" / "profile", profile(inputMethods));
  // Control and Space is a key like any other in the stories.
  writeFile(path() / "config" / "fcitx5" / "config", "[Hotkey/TriggerKeys]\n0=Super+F12\n");
  const auto inside = [this](const char* name) { return (path() / name).string(); };
  environment_ = {{"HOME", path().string()},
                  {"XDG_CONFIG_HOME", inside("config")},
                  {"XDG_DATA_HOME", inside("data")},
                  {"XDG_CACHE_HOME", inside("cache")},
                  {"XDG_RUNTIME_DIR", inside("run")},
                  {"FCITX_DATA_DIRS", std::string(TESSAROK_FCITX5_DATA) +
                                          ":/usr/share/fcitx5/testing:/usr/share/fcitx5"},
                  {"TESSAROK_RES", TESSAROK_TEST_DATA},
                  {"LC_ALL", "C.UTF-8"},
                  {"LANG", "C.UTF-8"},
                  {"DISPLAY", ""},
                  {"WAYLAND_DISPLAY", ""},
                  {"DBUS_SESSION_BUS_ADDRESS", ""},
                  {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent"},
                  {"XDG_SESSION_TYPE", ""}};
  std::filesystem::create_directories(path() / "run");
  std::filesystem::permissions(path() / "run", std::filesystem::perms::owner_all);
}

std::string driveFcitx(const FcitxHome& home, const nlohmann::json& script, const Buses& buses) {
  const auto scriptFile = home.path() / "script.json";
  const auto result = home.path() / "result";
  const auto errors = home.path() / "errors";
  writeFile(scriptFile, script.dump());
  Subprocess::Setup setup;
  setup.environment = home.environment();
  setup.environment["TESSAROK_DRIVER_SCRIPT"] = scriptFile.string();
  setup.environment["TESSAROK_DRIVER_RESULT"] = result.string();
  setup.environment["TESSAROK_DRIVER_SETTINGS"] = home.settings().string();
  if (!buses.system.empty()) setup.environment["DBUS_SYSTEM_BUS_ADDRESS"] = buses.system;
  if (!buses.session.empty()) setup.environment["DBUS_SESSION_BUS_ADDRESS"] = buses.session;
  setup.errors = errors;
  Subprocess fcitx({"fcitx5", "--disable=all", "--enable=testui,keyboard,tessarok,tessarokdriver"},
                   "fcitx5", setup);
  const int status = fcitx.exitStatus();
  if (!std::filesystem::exists(result) || status != 0) {
    return "fcitx5 ended with status " + std::to_string(status) + "\n" + readFile(errors);
  }
  return readFile(result);
}

}  // namespace tessarok::testing

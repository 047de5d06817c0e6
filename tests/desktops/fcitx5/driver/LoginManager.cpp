#include "tests/desktops/fcitx5/driver/LoginManager.h"

#include <cstdlib>
#include <stdexcept>
#include <string_view>

namespace tessarok::testing {

namespace {

constexpr const char* kName = "org.freedesktop.login1";
constexpr const char* kPath = "/org/freedesktop/login1";
constexpr const char* kManager = "org.freedesktop.login1.Manager";
constexpr const char* kSession = "org.freedesktop.login1.Session";
constexpr const char* kSessionPath = "/org/freedesktop/login1/session/_31";

}  // namespace

std::unique_ptr<LoginManager> LoginManager::onSystemBus(fcitx::EventLoop& loop) {
  const char* address = std::getenv("DBUS_SYSTEM_BUS_ADDRESS");
  if (address == nullptr || std::string_view(address).ends_with("nonexistent")) return nullptr;
  return std::unique_ptr<LoginManager>(new LoginManager(loop, address));
}

LoginManager::LoginManager(fcitx::EventLoop& loop, const std::string& address) : bus_(address) {
  bus_.attachEventLoop(&loop);
  bus_.addObjectVTable(kPath, kManager, *this);
  if (!bus_.requestName(kName, fcitx::Flags<fcitx::dbus::RequestNameFlag>())) {
    throw std::runtime_error("there is another login manager");
  }
}

fcitx::dbus::ObjectPath LoginManager::getSession(const std::string&) {
  isAsked_ = true;
  return fcitx::dbus::ObjectPath(kSessionPath);
}

void LoginManager::tell(const std::string& what) {
  const bool isOfMachine = what == "sleep" || what == "wake";
  auto signal = isOfMachine ? bus_.createSignal(kPath, kManager, "PrepareForSleep")
                            : bus_.createSignal(kSessionPath, kSession, what.c_str());
  if (isOfMachine) signal << (what == "sleep");
  signal.send();
  bus_.flush();
}

}  // namespace tessarok::testing

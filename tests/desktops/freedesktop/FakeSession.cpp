#include "tests/desktops/freedesktop/FakeSession.h"

#include <stdexcept>
#include <utility>

namespace tessarok::testing {

namespace {

constexpr const char* kField = "/org/a11y/atspi/accessible/8";
constexpr const char* kSessionPath = "/org/freedesktop/login1/session/_32";
constexpr const char* kSession = "org.freedesktop.login1.Session";
constexpr std::uint32_t kText = 61;

}  // namespace

/// What the program calls.
struct FakeSession::Calls {
  static FakeSession& of(void* userData) { return *static_cast<FakeSession*>(userData); }
  static void note(void* userData, const char* purpose, sd_bus_message* call) {
    of(userData).program_[purpose] = sd_bus_message_get_sender(call);
  }

  static int getAddress(sd_bus_message* call, void* userData, sd_bus_error*) noexcept {
    note(userData, "session", call);
    return sd_bus_reply_method_return(call, "s", of(userData).bus_.address().c_str());
  }
  static int registerEvent(sd_bus_message* call, void* userData, sd_bus_error*) noexcept {
    note(userData, "accessibility", call);
    auto signal =
        of(userData).services_.signal(kField, "org.a11y.atspi.Event.Object", "StateChanged");
    sd_bus_message_append(signal.get(), "siiv(so)", "focused", 1, 0, "i", 0, "", "/");
    of(userData).services_.send(std::move(signal));
    return sd_bus_reply_method_return(call, "");
  }
  static int getRole(sd_bus_message* call, void*, sd_bus_error*) noexcept {
    return sd_bus_reply_method_return(call, "u", kText);
  }
  static int getSession(sd_bus_message* call, void* userData, sd_bus_error*) noexcept {
    note(userData, "system", call);
    return sd_bus_reply_method_return(call, "o", kSessionPath);
  }
  static int notify(sd_bus_message* call, void* userData, sd_bus_error*) noexcept {
    of(userData).isNotified_ = true;
    return sd_bus_reply_method_return(call, "u", 7U);
  }

  static const sd_bus_vtable kLauncher[];
  static const sd_bus_vtable kRegistry[];
  static const sd_bus_vtable kAccessible[];
  static const sd_bus_vtable kManager[];
  static const sd_bus_vtable kNotifications[];
};

const sd_bus_vtable FakeSession::Calls::kLauncher[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("GetAddress", "", "s", getAddress, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};
const sd_bus_vtable FakeSession::Calls::kRegistry[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("RegisterEvent", "s", "", registerEvent, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};
const sd_bus_vtable FakeSession::Calls::kAccessible[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("GetRole", "", "u", getRole, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};
const sd_bus_vtable FakeSession::Calls::kManager[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("GetSession", "s", "o", getSession, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};
const sd_bus_vtable FakeSession::Calls::kNotifications[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("Notify", "susssasa{sv}i", "u", notify, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

FakeSession::FakeSession() {
  services_.offer("/org/a11y/bus", "org.a11y.Bus", Calls::kLauncher, this);
  services_.offer("/org/a11y/atspi/registry", "org.a11y.atspi.Registry", Calls::kRegistry, this);
  services_.offer(kField, "org.a11y.atspi.Accessible", Calls::kAccessible, this);
  services_.offer("/org/freedesktop/login1", "org.freedesktop.login1.Manager", Calls::kManager,
                  this);
  services_.offer("/org/freedesktop/Notifications", "org.freedesktop.Notifications",
                  Calls::kNotifications, this);
  for (const auto* name : {"org.a11y.Bus", "org.a11y.atspi.Registry", "org.freedesktop.login1",
                           "org.freedesktop.Notifications"}) {
    if (!services_.own(name)) throw std::runtime_error("the bus gives no names");
  }
  reset();
}

std::map<std::string, std::string> FakeSession::environment() const {
  return {{"DBUS_SESSION_BUS_ADDRESS", bus_.address()},
          {"DBUS_SYSTEM_BUS_ADDRESS", bus_.address()},
          {"XDG_SESSION_ID", "2"}};
}

void FakeSession::reset() {
  program_.clear();
  isFileChosen_ = false;
  isNotified_ = false;
  // A panel that was there before the program.
  panel_.reset();
  panel_ = std::make_unique<StatusHost>(pump_, bus_.address());
  settle();
}

bool FakeSession::isFound() const {
  return program_.size() == 3 && !panel_->registered().empty();
}

void FakeSession::beBusy() {
  if (!panel_->registered().empty()) usePanel();
  sendSignals();
  settle();
  // What the first question has brought about is answered as well.
  settle();
}

void FakeSession::usePanel() {
  static_cast<void>(panel_->text("IconName"));
  static_cast<void>(panel_->pixels());
  static_cast<void>(panel_->toolTip());
  for (const auto* member : {"GetGroupProperties", "AboutToShowGroup"}) {
    auto call = panel_->menuCall(member);
    sd_bus_message_append(call.get(), "ai", 2, 0, 1);
    if (std::string_view(member) == "GetGroupProperties")
      sd_bus_message_append(call.get(), "as", 0);
    static_cast<void>(panel_->callMenu(std::move(call)));
  }
  static_cast<void>(panel_->choose("Shift-фикс (ПРивет → Привет)"));
  isFileChosen_ = panel_->choose("Open User Dictionary…");
}

void FakeSession::sendSignals() {
  auto properties =
      services_.signal(kSessionPath, "org.freedesktop.DBus.Properties", "PropertiesChanged");
  sd_bus_message_append(properties.get(), "sa{sv}as", kSession, 2, "IdleSinceHint", "t",
                        std::uint64_t{1}, "Active", "b", 1, 0);
  services_.send(std::move(properties));
  auto sleep = services_.signal("/org/freedesktop/login1", "org.freedesktop.login1.Manager",
                                "PrepareForSleep");
  sd_bus_message_append(sleep.get(), "b", 0);
  services_.send(std::move(sleep));
  auto saver = services_.signal("/", "org.freedesktop.ScreenSaver", "ActiveChanged");
  sd_bus_message_append(saver.get(), "b", 1);
  services_.send(std::move(saver));
}

void FakeSession::settle() {
  auto names = program_;
  names["daemon"] = "org.freedesktop.DBus";
  for (const auto& [purpose, name] : names) {
    bool answered = false;
    auto& bus = services_.bus();
    const auto slot = bus.call(bus.methodCall(name, "/", "org.freedesktop.DBus.Peer", "Ping"),
                               [&answered](sd_bus_message&) { answered = true; });
    static_cast<void>(pump_.until([&answered] { return answered; }));
  }
}

}  // namespace tessarok::testing

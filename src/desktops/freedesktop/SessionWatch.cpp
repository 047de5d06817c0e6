#include "desktops/freedesktop/SessionWatch.h"

#include <string_view>
#include <system_error>

#include "desktops/posix/Translation.h"

namespace tessarok::freedesktop {

namespace {

using platform::Notification;

constexpr const char* kLogind = "org.freedesktop.login1";
constexpr const char* kManagerPath = "/org/freedesktop/login1";
constexpr const char* kManager = "org.freedesktop.login1.Manager";
constexpr const char* kSession = "org.freedesktop.login1.Session";

/// Desktops have screen savers of their own beside the common one.
constexpr const char* kScreenSavers[] = {
    "org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver", "org.cinnamon.ScreenSaver",
    "org.mate.ScreenSaver",        "org.xfce.ScreenSaver",
};

std::string signalsOfLogind(const std::string& path, const std::string& interface,
                            const std::string& member) {
  return std::string("type='signal',sender='") + kLogind + "',path='" + path + "',interface='" +
         interface + "',member='" + member + "'";
}

}  // namespace

SessionWatch::SessionWatch(Bus* system, Bus* session, const Surroundings& surroundings)
    : surroundings_(surroundings) {
  auto& log = surroundings.log;
  if (system != nullptr) {
    system->onClosed = [&log](const std::string& reason) {
      log.write("Tessarok: " +
                posix::translated("the system bus is lost ({1}); sleep and locked sessions are "
                                  "not noticed",
                                  {reason}));
    };
    watchSleep(*system);
    findSession(*system);
  } else {
    log.write("Tessarok: " + posix::translated("there is no system bus; sleep and locked sessions "
                                               "are not noticed"));
  }
  if (session != nullptr) watchScreenSaver(*session);
}

void SessionWatch::watchSleep(Bus& system) {
  subscriptions_.push_back(system.match(
      signalsOfLogind(kManagerPath, kManager, "PrepareForSleep"), [this](sd_bus_message& signal) {
        int sleeps = 0;
        if (sd_bus_message_read(&signal, "b", &sleeps) < 0) return;
        surroundings_.centre.announce(sleeps != 0 ? Notification::willSleep
                                                  : Notification::didWake);
      }));
}

void SessionWatch::findSession(Bus& system) {
  // A service of the person's systemd belongs to no session; "auto" is then the one that they
  // have in front of them.
  const auto identifier = surroundings_.environment.variable("XDG_SESSION_ID").value_or("");
  auto message = system.methodCall(kLogind, kManagerPath, kManager, "GetSession");
  if (message) {
    sd_bus_message_append(message.get(), "s", identifier.empty() ? "auto" : identifier.c_str());
  }
  session_ = system.call(std::move(message), [this, &system](sd_bus_message& reply) {
    const char* path = nullptr;
    const auto* error = sd_bus_message_get_error(&reply);
    // A bus that is being lost tells it by itself.
    if (sd_bus_error_has_name(error, SD_BUS_ERROR_NO_REPLY) != 0) return;
    if (error != nullptr) return sessionUnknown(textOf(*error));
    const int read = sd_bus_message_read(&reply, "o", &path);
    if (read < 0) return sessionUnknown(std::generic_category().message(-read));
    watchSession(system, path);
  });
}

void SessionWatch::sessionUnknown(const std::string& reason) {
  surroundings_.log.write(
      "Tessarok: " +
      posix::translated("the login manager does not tell the session ({1}); a locked "
                        "session is not noticed",
                        {reason}));
}

void SessionWatch::watchSession(Bus& system, const std::string& path) {
  subscriptions_.push_back(
      system.match(signalsOfLogind(path, kSession, "Lock"), [this](sd_bus_message&) {
        locked_ = true;
        announceSession();
      }));
  subscriptions_.push_back(
      system.match(signalsOfLogind(path, kSession, "Unlock"), [this](sd_bus_message&) {
        locked_ = false;
        announceSession();
      }));
  subscriptions_.push_back(
      system.match(signalsOfLogind(path, "org.freedesktop.DBus.Properties", "PropertiesChanged"),
                   [this](sd_bus_message& signal) { readProperties(signal); }));
}

void SessionWatch::watchScreenSaver(Bus& session) {
  for (const auto* interface : kScreenSavers) {
    subscriptions_.push_back(session.match(
        std::string("type='signal',interface='") + interface + "',member='ActiveChanged'",
        [this](sd_bus_message& signal) {
          int starts = 0;
          if (sd_bus_message_read(&signal, "b", &starts) < 0 || starts == 0) return;
          surroundings_.centre.announce(Notification::screensDidSleep);
        }));
  }
}

void SessionWatch::readProperties(sd_bus_message& message) {
  const char* interface = nullptr;
  if (sd_bus_message_read(&message, "s", &interface) < 0) return;
  if (std::string_view(interface) != kSession) return;
  if (sd_bus_message_enter_container(&message, 'a', "{sv}") < 0) return;
  while (sd_bus_message_enter_container(&message, 'e', "sv") > 0) {
    const char* name = nullptr;
    if (sd_bus_message_read(&message, "s", &name) < 0) return;
    const std::string_view property = name;
    int value = 0;
    if (property != "Active" && property != "LockedHint") {
      sd_bus_message_skip(&message, "v");
    } else if (sd_bus_message_read(&message, "v", "b", &value) >= 0) {
      (property == "Active" ? active_ : locked_) = value != 0;
    } else {
      return;
    }
    sd_bus_message_exit_container(&message);
  }
  announceSession();
}

void SessionWatch::announceSession() {
  const bool inFront = active_ && !locked_;
  if (inFront == announcedInFront_) return;
  announcedInFront_ = inFront;
  surroundings_.centre.announce(inFront ? Notification::sessionBecameActive
                                        : Notification::sessionResignedActive);
}

}  // namespace tessarok::freedesktop

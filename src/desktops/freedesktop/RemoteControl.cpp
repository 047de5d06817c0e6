#include "desktops/freedesktop/RemoteControl.h"

#include <cstdint>
#include <unistd.h>
#include <utility>

#include "desktops/freedesktop/BusExceptions.h"
#include "desktops/freedesktop/BusWriter.h"
#include "typing/InputSource.h"
#include "typing/KeyTap.h"

namespace tessarok::freedesktop {

namespace {

const char* correctionOf(const Status& status) {
  if (!status.works()) return "waiting";
  if (!status.enabled) return "off";
  if (status.paused) return "paused";
  return status.hasWordData ? "on" : "by hand";
}

/// The name of the layout that is on; empty when none is known to be.
std::string currentLayout() {
  const auto identifier = InputSource::current();
  if (!identifier) return {};
  for (const auto& layout : InputSource::enabledLayouts()) {
    if (layout->identifier() == identifier) return layout->name();
  }
  return *identifier;
}

int appendTexts(sd_bus_message* reply, const std::vector<std::string>& texts) {
  BusWriter body(*reply);
  body.open('a', "s");
  for (const auto& text : texts)
    body.append("s", text.c_str());
  body.close();
  return body.result();
}

}  // namespace

/// What is called over the bus.
struct RemoteControl::Calls {
  static RemoteControl& of(void* userData) { return *static_cast<RemoteControl*>(userData); }

  static int version(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
                     sd_bus_error*) {
    return sd_bus_message_append(reply, "s", TESSAROK_VERSION);
  }
  static int desktop(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                     void* userData, sd_bus_error*) {
    return sd_bus_message_append(reply, "s", of(userData).desktop_.name.c_str());
  }
  static int process(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
                     sd_bus_error*) {
    return sd_bus_message_append(reply, "u", static_cast<std::uint32_t>(::getpid()));
  }
  static int since(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                   void* userData, sd_bus_error*) {
    const auto seconds =
        std::chrono::duration_cast<std::chrono::seconds>(of(userData).since_.time_since_epoch());
    return sd_bus_message_append(reply, "x", static_cast<std::int64_t>(seconds.count()));
  }
  static int correction(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                        void* userData, sd_bus_error*) {
    return sd_bus_message_append(reply, "s", correctionOf(of(userData).delegate_.status()));
  }
  static int enabled(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                     void* userData, sd_bus_error*) {
    return sd_bus_message_append(reply, "b", of(userData).delegate_.status().enabled ? 1 : 0);
  }
  static int layout(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
                    sd_bus_error*) {
    return sd_bus_message_append(reply, "s", currentLayout().c_str());
  }
  static int layouts(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
                     sd_bus_error*) {
    std::vector<std::string> names;
    for (const auto& layout : InputSource::enabledLayouts())
      names.push_back(layout->name());
    return appendTexts(reply, names);
  }
  static int obstacles(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply,
                       void* userData, sd_bus_error*) {
    return appendTexts(reply, of(userData).desktop_.obstacles());
  }

  static int on(sd_bus_message* call, void* userData, sd_bus_error*) {
    of(userData).delegate_.setCorrection(AppDelegate::Correction::on);
    return sd_bus_reply_method_return(call, nullptr);
  }
  static int off(sd_bus_message* call, void* userData, sd_bus_error*) {
    of(userData).delegate_.setCorrection(AppDelegate::Correction::off);
    return sd_bus_reply_method_return(call, nullptr);
  }
  static int pause(sd_bus_message* call, void*, sd_bus_error*) {
    KeyTap::shared().startPause();
    return sd_bus_reply_method_return(call, nullptr);
  }
  static int quit(sd_bus_message* call, void* userData, sd_bus_error*) {
    // The answer is on its way first.
    of(userData).loop_.async([&delegate = of(userData).delegate_] { delegate.quit(); });
    return sd_bus_reply_method_return(call, nullptr);
  }

  static const sd_bus_vtable kTable[];
};

const sd_bus_vtable RemoteControl::Calls::kTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_PROPERTY("Version", "s", BusExceptions::get<version>, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Desktop", "s", BusExceptions::get<desktop>, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("ProcessId", "u", BusExceptions::get<process>, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Since", "x", BusExceptions::get<since>, 0, SD_BUS_VTABLE_PROPERTY_CONST),
    SD_BUS_PROPERTY("Correction", "s", BusExceptions::get<correction>, 0, 0),
    SD_BUS_PROPERTY("Enabled", "b", BusExceptions::get<enabled>, 0, 0),
    SD_BUS_PROPERTY("Layout", "s", BusExceptions::get<layout>, 0, 0),
    SD_BUS_PROPERTY("Layouts", "as", BusExceptions::get<layouts>, 0, 0),
    SD_BUS_PROPERTY("Obstacles", "as", BusExceptions::get<obstacles>, 0, 0),
    SD_BUS_METHOD("On", "", "", BusExceptions::call<on>, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Off", "", "", BusExceptions::call<off>, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Pause", "", "", BusExceptions::call<pause>, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Quit", "", "", BusExceptions::call<quit>, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

RemoteControl::RemoteControl(Bus& bus, platform::RunLoop& loop, AppDelegate& delegate,
                             Desktop desktop)
    : loop_(loop),
      delegate_(delegate),
      desktop_(std::move(desktop)),
      object_(bus.addObject(kPath, kInterface, Calls::kTable, this)),
      name_(bus.requestName(kName)) {}

}  // namespace tessarok::freedesktop

#pragma once

#include "desktops/freedesktop/Bus.h"

/// What the extension of GNOME's shell offers on the session bus. Main thread.
namespace tessarok::ibus::shellExtension {

/// A call of one of its methods. A shell that does not run is not started by it.
[[nodiscard]] inline freedesktop::BusMessage call(freedesktop::Bus& session, const char* method) {
  auto message = session.methodCall("org.gnome.Shell", "/app/tessarok/InputSources",
                                    "app.tessarok.InputSources1", method);
  if (message) sd_bus_message_set_auto_start(message.get(), 0);
  return message;
}

}  // namespace tessarok::ibus::shellExtension

#pragma once

#include <memory>
#include <systemd/sd-bus.h>

namespace tessarok::freedesktop {

/// Gives one reference to a message back.
struct BusMessageUnref {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};

/// A D-Bus message that is owned; null when it could not be made.
using BusMessage = std::unique_ptr<sd_bus_message, BusMessageUnref>;

}  // namespace tessarok::freedesktop

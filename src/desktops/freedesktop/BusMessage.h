#pragma once

#include <memory>
#include <string>
#include <systemd/sd-bus.h>

namespace tessarok::freedesktop {

/// Gives one reference to a message back.
struct BusMessageUnref {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};

/// A D-Bus message that is owned; null when it could not be made.
using BusMessage = std::unique_ptr<sd_bus_message, BusMessageUnref>;

/// What a peer says of its error; the error's name where it explains nothing.
inline std::string textOf(const sd_bus_error& error) {
  return error.message != nullptr ? error.message : error.name;
}

}  // namespace tessarok::freedesktop

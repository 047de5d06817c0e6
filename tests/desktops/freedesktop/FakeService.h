#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "desktops/freedesktop/Bus.h"
#include "tests/desktops/freedesktop/Pump.h"

namespace tessarok::testing {

/// A program on a bus that the test plays: it owns a name, offers an object and sends signals.
class FakeService final {
 public:
  FakeService(Pump& pump, const std::string& address) : pump_(pump) {
    std::string reason;
    bus_ = freedesktop::Bus::openAddress(pump, address, reason);
  }

  /// Offers an interface; `object` is passed to its functions.
  void offer(const char* path, const char* interface, const sd_bus_vtable* table, void* object) {
    slots_.push_back(bus_->addObject(path, interface, table, object));
  }
  /// Takes a well-known name and waits until it is had.
  [[nodiscard]] bool own(const std::string& name) {
    bool done = false;
    auto call = bus_->methodCall("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                 "org.freedesktop.DBus", "RequestName");
    sd_bus_message_append(call.get(), "su", name.c_str(), 0U);
    const auto slot = bus_->call(std::move(call), [&done](sd_bus_message&) { done = true; });
    return pump_.until([&done] { return done; });
  }
  [[nodiscard]] freedesktop::BusMessage signal(const char* path, const char* interface,
                                               const char* member) {
    return bus_->signal(path, interface, member);
  }
  void send(freedesktop::BusMessage message) { bus_->send(std::move(message)); }
  [[nodiscard]] freedesktop::Bus& bus() { return *bus_; }
  /// Closes the connection, as a program that ends.
  void end() {
    slots_.clear();
    bus_.reset();
  }

 private:
  Pump& pump_;
  std::unique_ptr<freedesktop::Bus> bus_;
  std::vector<freedesktop::BusSlot> slots_;
};

}  // namespace tessarok::testing

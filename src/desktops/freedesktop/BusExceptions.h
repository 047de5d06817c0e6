#pragma once

#include <exception>
#include <systemd/sd-bus.h>
#include <utility>

namespace tessarok::freedesktop {

/// Keeps exceptions out of sd-bus, which is C and knows none: what something throws that it calls
/// waits here until `Bus` throws it again, outside. Main thread.
class BusExceptions final {
 public:
  BusExceptions() = delete;

  /// What `work` returns; a failed call where it throws.
  template <typename Work>
  static int keep(Work&& work) noexcept {
    try {
      return work();
    } catch (...) {
      kept_ = std::current_exception();
      return -ECANCELED;
    }
  }
  /// Throws what was kept last, once.
  static void rethrow() {
    if (const auto kept = std::exchange(kept_, nullptr)) std::rethrow_exception(kept);
  }

  /// A function that sd-bus calls for a method, as an entry of its tables.
  template <sd_bus_message_handler_t method>
  static int call(sd_bus_message* message, void* userData, sd_bus_error* error) noexcept {
    return keep([&] { return method(message, userData, error); });
  }
  /// The same for a property.
  template <sd_bus_property_get_t property>
  static int get(sd_bus* bus, const char* path, const char* interface, const char* name,
                 sd_bus_message* reply, void* userData, sd_bus_error* error) noexcept {
    return keep([&] { return property(bus, path, interface, name, reply, userData, error); });
  }

 private:
  static inline std::exception_ptr kept_;
};

}  // namespace tessarok::freedesktop

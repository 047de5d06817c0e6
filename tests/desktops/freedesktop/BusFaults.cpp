// The calls of sd-bus, also those that it makes of itself. See FaultLibrary.h.

#include <sys/socket.h>
#include <systemd/sd-bus.h>

#include "tests/fault/FaultLibrary.h"

using tessarok::faults::failingError;
using tessarok::faults::fails;
using tessarok::faults::real;

// NOLINTBEGIN: the names and types are those of the library.
/// It answers with the number itself.
#define FAILING_BUS(name, arguments, values) FAILING(int, name, -failingError, arguments, values)

extern "C" {

FAILING_BUS(sd_bus_open_user, (sd_bus * *bus), (bus))
FAILING_BUS(sd_bus_open_system, (sd_bus * *bus), (bus))
FAILING_BUS(sd_bus_new, (sd_bus * *bus), (bus))
FAILING_BUS(sd_bus_set_address, (sd_bus * bus, const char* address), (bus, address))
FAILING_BUS(sd_bus_set_bus_client, (sd_bus * bus, int is), (bus, is))
FAILING_BUS(sd_bus_start, (sd_bus * bus), (bus))
FAILING_BUS(sd_bus_get_fd, (sd_bus * bus), (bus))
FAILING_BUS(sd_bus_get_events, (sd_bus * bus), (bus))
FAILING_BUS(sd_bus_get_timeout, (sd_bus * bus, uint64_t* microseconds), (bus, microseconds))
FAILING_BUS(sd_bus_is_ready, (sd_bus * bus), (bus))
int sd_bus_process(sd_bus* bus, sd_bus_message** message) {
  REAL(sd_bus_process);
  if (!fails("sd_bus_process")) return next(bus, message);
  // One that is lost stays lost.
  const int error = failingError;
  if (error == ECONNRESET) ::shutdown(sd_bus_get_fd(bus), SHUT_RDWR);
  return -error;
}
FAILING_BUS(sd_bus_send, (sd_bus * bus, sd_bus_message* message, uint64_t* cookie),
            (bus, message, cookie))
FAILING_BUS(sd_bus_call_async,
            (sd_bus * bus, sd_bus_slot** slot, sd_bus_message* message,
             sd_bus_message_handler_t callback, void* data, uint64_t microseconds),
            (bus, slot, message, callback, data, microseconds))
FAILING_BUS(sd_bus_add_match_async,
            (sd_bus * bus, sd_bus_slot** slot, const char* rule, sd_bus_message_handler_t callback,
             sd_bus_message_handler_t installed, void* data),
            (bus, slot, rule, callback, installed, data))
FAILING_BUS(sd_bus_add_object_vtable,
            (sd_bus * bus, sd_bus_slot** slot, const char* path, const char* interface,
             const sd_bus_vtable* table, void* data),
            (bus, slot, path, interface, table, data))
FAILING_BUS(sd_bus_request_name_async,
            (sd_bus * bus, sd_bus_slot** slot, const char* name, uint64_t flags,
             sd_bus_message_handler_t callback, void* data),
            (bus, slot, name, flags, callback, data))

FAILING_BUS(sd_bus_message_new_method_call,
            (sd_bus * bus, sd_bus_message** message, const char* destination, const char* path,
             const char* interface, const char* member),
            (bus, message, destination, path, interface, member))
FAILING_BUS(sd_bus_message_new_method_return, (sd_bus_message * call, sd_bus_message** message),
            (call, message))
FAILING_BUS(sd_bus_message_new_signal,
            (sd_bus * bus, sd_bus_message** message, const char* path, const char* interface,
             const char* member),
            (bus, message, path, interface, member))
FAILING_BUS(sd_bus_message_open_container,
            (sd_bus_message * message, char type, const char* contents), (message, type, contents))
FAILING_BUS(sd_bus_message_close_container, (sd_bus_message * message), (message))
FAILING_BUS(sd_bus_message_append_basic, (sd_bus_message * message, char type, const void* value),
            (message, type, value))
FAILING_BUS(sd_bus_message_append_array,
            (sd_bus_message * message, char type, const void* values, size_t size),
            (message, type, values, size))
FAILING_BUS(sd_bus_message_enter_container,
            (sd_bus_message * message, char type, const char* contents), (message, type, contents))
FAILING_BUS(sd_bus_message_exit_container, (sd_bus_message * message), (message))
FAILING_BUS(sd_bus_message_read_basic, (sd_bus_message * message, char type, void* value),
            (message, type, value))
FAILING_BUS(sd_bus_message_skip, (sd_bus_message * message, const char* types), (message, types))

// Those of any number of arguments.
int sd_bus_message_append(sd_bus_message* message, const char* types, ...) {
  if (fails("sd_bus_message_append")) return -failingError;
  va_list values;
  va_start(values, types);
  const int result = sd_bus_message_appendv(message, types, values);
  va_end(values);
  return result;
}
int sd_bus_message_read(sd_bus_message* message, const char* types, ...) {
  if (fails("sd_bus_message_read")) return -failingError;
  va_list values;
  va_start(values, types);
  const int result = sd_bus_message_readv(message, types, values);
  va_end(values);
  return result;
}
int sd_bus_reply_method_return(sd_bus_message* call, const char* types, ...) {
  if (fails("sd_bus_reply_method_return")) return -failingError;
  va_list values;
  va_start(values, types);
  const int result = sd_bus_reply_method_returnv(call, types, values);
  va_end(values);
  return result;
}

}  // extern "C"
// NOLINTEND

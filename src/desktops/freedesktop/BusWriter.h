#pragma once

#include <cstddef>
#include <systemd/sd-bus.h>

namespace tessarok::freedesktop {

/// Builds the body of a message. What fails is told in the end: after it nothing more is added, and
/// a message that is only half built must not be sent. Main thread.
class BusWriter final {
 public:
  /// `message` outlives the writer.
  explicit BusWriter(sd_bus_message& message) : message_(message) {}

  template <typename... Values>
  void append(const char* types, Values... values) {
    if (result_ >= 0) result_ = sd_bus_message_append(&message_, types, values...);
  }
  void appendArray(char type, const void* values, std::size_t bytes) {
    if (result_ >= 0) result_ = sd_bus_message_append_array(&message_, type, values, bytes);
  }
  void open(char type, const char* contents) {
    if (result_ >= 0) result_ = sd_bus_message_open_container(&message_, type, contents);
  }
  void close() {
    if (result_ >= 0) result_ = sd_bus_message_close_container(&message_);
  }

  /// Negative when something could not be added: the error number of that.
  [[nodiscard]] int result() const { return result_; }
  /// Sends the message where it belongs, if it is whole; the result of both.
  int send() { return result_ < 0 ? result_ : sd_bus_send(nullptr, &message_, nullptr); }

 private:
  sd_bus_message& message_;
  int result_ = 0;
};

}  // namespace tessarok::freedesktop

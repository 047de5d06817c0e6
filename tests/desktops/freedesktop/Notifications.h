#pragma once

#include <gtest/gtest.h>
#include <string>
#include <utility>

#include "tests/desktops/freedesktop/FakeService.h"
#include "tests/desktops/freedesktop/Pump.h"

namespace tessarok::testing {

/// The part of the desktop that shows notifications.
class Notifications final {
 public:
  Notifications(Pump& pump, const std::string& address) : pump_(pump), service_(pump, address) {
    service_.offer("/org/freedesktop/Notifications", "org.freedesktop.Notifications", kTable, this);
    EXPECT_TRUE(service_.own("org.freedesktop.Notifications"));
  }
  /// Summary and body of the next notification.
  [[nodiscard]] std::string next() {
    EXPECT_TRUE(pump_.until([this] { return !shown_.empty(); }));
    return shown_.empty() ? "" : std::exchange(shown_, "");
  }
  [[nodiscard]] int count() const { return count_; }

 private:
  static int notify(sd_bus_message* call, void* userData, sd_bus_error*) noexcept {
    const char* summary = nullptr;
    const char* body = nullptr;
    if (const int read =
            sd_bus_message_read(call, "susss", nullptr, nullptr, nullptr, &summary, &body);
        read < 0) {
      return read;
    }
    ++static_cast<Notifications*>(userData)->count_;
    static_cast<Notifications*>(userData)->shown_ = std::string(summary) + "|" + body;
    return sd_bus_reply_method_return(call, "u", 7U);
  }
  static const sd_bus_vtable kTable[];

  Pump& pump_;
  FakeService service_;
  std::string shown_;
  int count_ = 0;
};

inline const sd_bus_vtable Notifications::kTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("Notify", "susssasa{sv}i", "u", notify, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

}  // namespace tessarok::testing

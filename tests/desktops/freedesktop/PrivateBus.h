#pragma once

#include <string>
#include <sys/types.h>

#include "desktops/virtual/TemporaryDirectory.h"

namespace tessarok::testing {

/// A message bus of the test's own, on which any name may be owned.
class PrivateBus final {
 public:
  /// What starts by itself when somebody calls it.
  enum class Services { none, installed };

  /// Throws when there is no dbus-daemon.
  explicit PrivateBus(Services services = Services::none);
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;
  ~PrivateBus() { stop(); }

  [[nodiscard]] const std::string& address() const { return address_; }
  /// Takes what it is sent from now on, and answers nothing.
  void hang();
  /// Ends the bus as a crash would.
  void stop();

 private:
  virtualdesktop::TemporaryDirectory folder_;
  pid_t process_ = -1;
  std::string address_;
};

}  // namespace tessarok::testing

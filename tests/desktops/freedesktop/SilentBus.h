#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "desktops/posix/FileDescriptor.h"
#include "desktops/virtual/TemporaryDirectory.h"

namespace tessarok::testing {

/// A bus that takes connections and never says a word.
class SilentBus final {
 public:
  SilentBus() : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    constexpr int kCallers = 16;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const auto path = file().string();
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    if (::bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(socket_.get(), kCallers) != 0) {
      throw std::runtime_error("cannot listen at " + path);
    }
  }
  /// Waits for a caller, and hangs up on it.
  void hangUp() const { ::close(::accept(socket_.get(), nullptr, nullptr)); }
  [[nodiscard]] std::string address() const { return "unix:path=" + file().string(); }

 private:
  [[nodiscard]] std::filesystem::path file() const { return folder_.path() / "bus"; }

  virtualdesktop::TemporaryDirectory folder_;
  posix::FileDescriptor socket_;
};

}  // namespace tessarok::testing

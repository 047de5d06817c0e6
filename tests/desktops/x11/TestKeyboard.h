#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "desktops/posix/FileDescriptor.h"

namespace tessarok::testing {

/// The hands at a keyboard of the server's test driver, whose keys take the way of real ones: from
/// the device into the server's queue. The driver listens at a socket.
class TestKeyboard final {
 public:
  /// Throws when nothing listens at `socket`.
  explicit TestKeyboard(const std::filesystem::path& socket);
  /// Again, after the driver has hung up.
  void connect();

  /// `key` is an X key code.
  void key(std::uint8_t key, bool isDown);

 private:
  void send(const void* message, std::size_t size);

  std::string path_;
  posix::FileDescriptor socket_;
};

}  // namespace tessarok::testing

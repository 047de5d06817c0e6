#include "tests/desktops/x11/TestKeyboard.h"

#include <cstring>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace tessarok::testing {

namespace {

// The messages of the driver, version 1.1. Each begins with its length in bytes.
enum MessageType : std::uint32_t { kClientVersion = 0, kKey = 5 };

struct Header {
  std::uint32_t length;
  std::uint32_t type;
};
struct Version {
  Header header;
  std::uint16_t major;
  std::uint16_t minor;
};
struct Key {
  Header header;
  std::int32_t code;
  std::uint32_t isPress;
};

}  // namespace

TestKeyboard::TestKeyboard(const std::filesystem::path& socket) : path_(socket.string()) {
  connect();
}

void TestKeyboard::connect() {
  socket_ = posix::FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path_.size() >= sizeof address.sun_path) throw std::runtime_error(path_ + " is too long");
  std::memcpy(address.sun_path, path_.c_str(), path_.size());
  if (::connect(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    throw std::runtime_error("no keyboard listens at " + path_);
  }
  const Version version{{sizeof version, kClientVersion}, 1, 1};
  send(&version, sizeof version);
  Version answer{};
  if (::recv(socket_.get(), &answer, sizeof answer, MSG_WAITALL) != sizeof answer) {
    throw std::runtime_error("the keyboard does not answer");
  }
}

void TestKeyboard::key(std::uint8_t key, bool isDown) {
  const Key message{{sizeof message, kKey}, key, isDown ? 1u : 0u};
  send(&message, sizeof message);
}

void TestKeyboard::send(const void* message, std::size_t size) {
  if (::send(socket_.get(), message, size, MSG_NOSIGNAL) != static_cast<ssize_t>(size)) {
    throw std::runtime_error("the keyboard has gone");
  }
}

}  // namespace tessarok::testing

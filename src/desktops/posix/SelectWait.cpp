// Without it a Mac's select refuses sets larger than the usual one.
#define _DARWIN_UNLIMITED_SELECT

#include "desktops/posix/SelectWait.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <fcntl.h>
#include <sys/select.h>
#include <vector>

namespace tessarok::posix {

namespace {

/// Descriptors of any number: the system's macros know only those of the usual size. Wherever the
/// words are stored with the lowest byte first, the sets are rows of bits, however wide a word is.
class DescriptorSet {
 public:
  explicit DescriptorSet(int highest)
      : words_(static_cast<std::size_t>(highest) / FD_SETSIZE + 1, fd_set{}) {}

  void add(int descriptor) { byteOf(descriptor) |= bitOf(descriptor); }
  [[nodiscard]] bool has(int descriptor) {
    return (byteOf(descriptor) & bitOf(descriptor)) != std::byte{0};
  }
  [[nodiscard]] fd_set* get() { return words_.data(); }

 private:
  static_assert(std::endian::native == std::endian::little);

  [[nodiscard]] std::byte& byteOf(int descriptor) {
    return reinterpret_cast<std::byte*>(words_.data())[descriptor / CHAR_BIT];
  }
  [[nodiscard]] static std::byte bitOf(int descriptor) {
    return std::byte{1} << (descriptor % CHAR_BIT);
  }

  std::vector<fd_set> words_;
};

/// poll tells of a descriptor that is not open which one it is.
int markClosed(std::span<pollfd> descriptors) {
  int closed = 0;
  for (auto& entry : descriptors) {
    if (entry.fd < 0 || ::fcntl(entry.fd, F_GETFD) >= 0) continue;
    entry.revents = POLLNVAL;
    ++closed;
  }
  return closed;
}

}  // namespace

int selectWait(std::span<pollfd> descriptors, int milliseconds) {
  int highest = -1;
  for (auto& entry : descriptors) {
    entry.revents = 0;
    highest = std::max(highest, entry.fd);
  }
  DescriptorSet readable(std::max(highest, 0));
  DescriptorSet writable(std::max(highest, 0));
  for (const auto& entry : descriptors) {
    if (entry.fd < 0) continue;
    if ((entry.events & POLLIN) != 0) readable.add(entry.fd);
    if ((entry.events & POLLOUT) != 0) writable.add(entry.fd);
  }
  timeval time{};
  time.tv_sec = milliseconds / 1000;
  time.tv_usec = milliseconds % 1000 * 1000;
  const int count = ::select(highest + 1, readable.get(), writable.get(), nullptr,
                             milliseconds < 0 ? nullptr : &time);
  if (count < 0 && errno == EBADF) return markClosed(descriptors);
  if (count <= 0) return count;
  int ready = 0;
  for (auto& entry : descriptors) {
    if (entry.fd < 0) continue;
    if ((entry.events & POLLIN) != 0 && readable.has(entry.fd)) entry.revents |= POLLIN;
    if ((entry.events & POLLOUT) != 0 && writable.has(entry.fd)) entry.revents |= POLLOUT;
    if (entry.revents != 0) ++ready;
  }
  return ready;
}

}  // namespace tessarok::posix

#pragma once

#include <cerrno>
#include <unistd.h>
#include <utility>

namespace tessarok::posix {

/// Owns an open file descriptor.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int number) : number_(number) {}
  FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~FileDescriptor() {
    if (number_ >= 0) ::close(number_);
  }

  [[nodiscard]] int get() const { return number_; }
  [[nodiscard]] bool isOpen() const { return number_ >= 0; }
  /// Closes at once; false when the system reports that something was not written.
  [[nodiscard]] bool close() {
    // Interrupted or not, it is closed.
    return ::close(std::exchange(number_, -1)) == 0 || errno == EINTR;
  }

 private:
  int number_ = -1;
};

}  // namespace tessarok::posix

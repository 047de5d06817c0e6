#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace tessarok::posix {

/// Bytes on their way to a file descriptor that may not take them at once. Nothing is dropped; the
/// one who fills the queue stops when it is full. Main thread.
class WriteQueue {
 public:
  enum class Mode {
    /// Perhaps in blocking mode: a write is made only when poll says that it can be.
    any,
    /// Surely not, so a write tells by itself whether it could be made.
    nonBlocking,
  };
  /// `descriptor` is not owned.
  explicit WriteQueue(int descriptor, Mode mode = Mode::any)
      : descriptor_(descriptor), mode_(mode) {}

  void add(std::string_view bytes) {
    bytes_.append(bytes);
    if (onAdd) onAdd(bytes);
  }
  /// Called with what is added.
  std::function<void(std::string_view bytes)> onAdd;
  /// Writes as much as can be written without waiting; false when the descriptor is broken, and
  /// then nothing more will be written.
  [[nodiscard]] bool flush();
  /// Writes everything, waiting as long as it takes. False as for `flush`.
  [[nodiscard]] bool flushWaiting();

  [[nodiscard]] int descriptor() const { return descriptor_; }
  [[nodiscard]] bool isEmpty() const { return bytes_.size() == done_; }
  /// Time to add no more.
  [[nodiscard]] bool isFull() const { return bytes_.size() - done_ >= kFull; }

 private:
  static constexpr std::size_t kFull = 65536;

  enum class Step { progress, wouldBlock, broken };
  [[nodiscard]] Step writeSome(int milliseconds);
  [[nodiscard]] bool flush(int milliseconds);

  int descriptor_;
  Mode mode_;
  std::string bytes_;
  /// How many of `bytes_` are written; they are removed when it pays.
  std::size_t done_ = 0;
  bool broken_ = false;
};

}  // namespace tessarok::posix

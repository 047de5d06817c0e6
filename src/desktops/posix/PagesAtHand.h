#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string_view>

#include "desktops/posix/ThreadQueue.h"

namespace tessarok::posix {

/// Why this is needed: the system may take the pages of a mapped file away when memory runs short,
/// and a dictionary that has rested for a night is the first to go. Whoever reads it then waits for
/// the disk, a page at a time, and so does the key that ends a word.
///
/// Behavior: a page is asked for before it is read. One that is not in memory is read by another
/// thread, and is waited for as long as the patience lasts. When that is used up everything is
/// read, and until it is there nothing is at hand. What was found is believed until `askAnew`.
///
/// Operational notes: the question is a call of the system that some file systems cannot answer
/// (tmpfs, overlays, FUSE, NFS). There another call tells, if the person may write the file; of a
/// file that they may only read everything counts as being at hand there, and elsewhere than on
/// Linux of every file. Any thread.
class PagesAtHand {
 public:
  /// How long may be waited between two calls of `askAnew`. There are two dictionaries, and a
  /// person notices a key that takes 50 ms.
  static constexpr std::chrono::milliseconds kPatience{20};

  /// Reads a part of the file, from one byte to another, for nothing but its being in memory then.
  using Read = std::function<void(std::size_t from, std::size_t to)>;
  /// Whether the byte at a place is in memory; true also when that cannot be known.
  using Ask = std::function<bool(std::size_t place)>;

  /// For a file that is mapped as a whole. Both outlive the object.
  PagesAtHand(int descriptor, std::string_view mapping,
              std::chrono::nanoseconds patience = kPatience);
  /// With other ways to ask and to read.
  PagesAtHand(std::size_t size, Ask ask, Read read, std::chrono::nanoseconds patience = kPatience);

  /// Whether the bytes from one place up to another can be read without a wait.
  [[nodiscard]] bool contain(std::size_t from, std::size_t to);
  /// Whatever was at hand may have gone since, and there is patience again.
  void askAnew();

 private:
  [[nodiscard]] bool fetch(std::size_t page);
  [[nodiscard]] bool waitFor(std::size_t page);
  void readAll();

  const std::size_t size_;
  const Ask ask_;
  const Read read_;
  const std::chrono::nanoseconds wholePatience_;
  /// The round in which a page was last seen to be at hand, for every page.
  const std::unique_ptr<std::atomic<std::uint32_t>[]> seen_;
  std::atomic<std::uint32_t> round_{1};
  std::atomic<bool> isReadingAll_{false};

  std::atomic<std::uint64_t> requests_{0};

  std::mutex mutex_;
  std::condition_variable answered_;
  std::uint64_t answers_ = 0;
  std::chrono::nanoseconds patience_;
  /// Last, so that what it does has ended before the rest goes.
  ThreadQueue reader_;
};

}  // namespace tessarok::posix

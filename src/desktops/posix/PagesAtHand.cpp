#include "desktops/posix/PagesAtHand.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <sys/mman.h>
#include <sys/uio.h>
#include <unistd.h>
#include <utility>

namespace tessarok::posix {

namespace {

/// The smallest that systems have; where they are larger some are asked for twice.
constexpr std::size_t kPageSize = 4096;

std::size_t pagesOf(std::size_t size) {
  return (size + kPageSize - 1) / kPageSize;
}

// Linux has it, and not every C library there.
#ifdef RWF_NOWAIT
/// What every file system can answer, but only to whoever may write the file: others are told that
/// all of it is in memory.
bool isResident(std::string_view mapping, std::size_t place) {
  unsigned char answer = 0;
  const auto* const page = mapping.data() + place;
  const bool isAnswered = ::mincore(const_cast<char*>(page), 1, &answer) == 0;
  return !isAnswered || (answer & 1) != 0;
}

bool isInMemory(int descriptor, std::string_view mapping, std::size_t place) {
  char byte = 0;
  const iovec part{&byte, 1};
  if (::preadv2(descriptor, &part, 1, static_cast<off_t>(place), RWF_NOWAIT) >= 0) return true;
  return errno != EAGAIN && isResident(mapping, place);
}
#else
bool isInMemory(int, std::string_view, std::size_t) {
  return true;
}
#endif

void readPart(int descriptor, std::size_t from, std::size_t to) {
  std::array<char, 64UL * 1024> buffer;
  while (from < to) {
    const auto wanted = std::min(buffer.size(), to - from);
    const auto count = ::pread(descriptor, buffer.data(), wanted, static_cast<off_t>(from));
    if (count < 0 && errno == EINTR) continue;
    // Whoever reads the mapping will see for itself what is wrong.
    if (count <= 0) return;
    from += static_cast<std::size_t>(count);
  }
}

}  // namespace

PagesAtHand::PagesAtHand(int descriptor, std::string_view mapping,
                         std::chrono::nanoseconds patience)
    : PagesAtHand(
          mapping.size(), [=](std::size_t place) { return isInMemory(descriptor, mapping, place); },
          [descriptor](std::size_t from, std::size_t to) { readPart(descriptor, from, to); },
          patience) {}

PagesAtHand::PagesAtHand(std::size_t size, Ask ask, Read read, std::chrono::nanoseconds patience)
    : size_(size),
      ask_(std::move(ask)),
      read_(std::move(read)),
      wholePatience_(patience),
      seen_(std::make_unique<std::atomic<std::uint32_t>[]>(pagesOf(size))),
      patience_(patience) {}

bool PagesAtHand::contain(std::size_t from, std::size_t to) {
  const auto round = round_.load(std::memory_order_relaxed);
  const auto end = pagesOf(std::min(to, size_));
  for (auto page = from / kPageSize; page < end; ++page) {
    if (seen_[page].load(std::memory_order_relaxed) == round) continue;
    if (!fetch(page)) return false;
    seen_[page].store(round, std::memory_order_relaxed);
  }
  return true;
}

void PagesAtHand::askAnew() {
  round_.fetch_add(1, std::memory_order_relaxed);
  const std::lock_guard lock(mutex_);
  patience_ = wholePatience_;
}

bool PagesAtHand::fetch(std::size_t page) {
  if (isReadingAll_.load()) return false;
  return ask_(page * kPageSize) || waitFor(page);
}

bool PagesAtHand::waitFor(std::size_t page) {
  const auto request = ++requests_;
  // Where the system has no thread to give it is read here.
  reader_.async([this, page, request] {
    read_(page * kPageSize, std::min((page + 1) * kPageSize, size_));
    const std::lock_guard answering(mutex_);
    answers_ = std::max(answers_, request);
    answered_.notify_all();
  });
  const auto start = std::chrono::steady_clock::now();
  std::unique_lock lock(mutex_);
  const bool isThere =
      answered_.wait_for(lock, patience_, [this, request] { return answers_ >= request; });
  patience_ -=
      std::min<std::chrono::nanoseconds>(patience_, std::chrono::steady_clock::now() - start);
  if (!isThere && !isReadingAll_.exchange(true)) reader_.async([this] { readAll(); });
  return isThere;
}

void PagesAtHand::readAll() {
  const auto round = round_.load();
  read_(0, size_);
  for (std::size_t page = 0; page < pagesOf(size_); ++page)
    seen_[page].store(round, std::memory_order_relaxed);
  isReadingAll_.store(false);
}

}  // namespace tessarok::posix

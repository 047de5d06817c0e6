// What is read from a mapped file must not be waited for longer than a person would notice.

#include <array>
#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <future>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "desktops/posix/FileDescriptor.h"
#include "desktops/posix/PagesAtHand.h"
#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/support/TestFiles.h"

namespace tessarok::posix {
namespace {

constexpr std::size_t kPage = 4096;
constexpr std::size_t kPages = 8;
constexpr std::size_t kSize = kPages * kPage - 100;

/// Longer than any machine needs to let another thread have its turn.
constexpr std::chrono::minutes kAnyTime{1};

/// A disk that answers when the test lets it, and memory that holds what was read.
class Disk {
 public:
  [[nodiscard]] PagesAtHand::Ask ask() {
    return [this](std::size_t place) {
      ++questions;
      return isInMemory[place / kPage].load();
    };
  }
  [[nodiscard]] PagesAtHand::Read read() {
    return [this](std::size_t from, std::size_t to) {
      answers.wait();
      for (auto page = from / kPage; page * kPage < to; ++page)
        isInMemory[page] = true;
      ++reads;
    };
  }
  void answer() { promise_.set_value(); }

 private:
  std::promise<void> promise_;

 public:
  std::shared_future<void> answers = promise_.get_future().share();
  std::array<std::atomic<bool>, kPages> isInMemory{};
  std::atomic<int> questions = 0;
  std::atomic<int> reads = 0;
};

TEST(PagesAtHand, WhatIsInMemoryIsAskedForOnce) {
  Disk disk;
  disk.answer();
  disk.isInMemory[2] = true;
  PagesAtHand pages(kSize, disk.ask(), disk.read());
  EXPECT_TRUE(pages.contain(2 * kPage + 5, 3 * kPage));
  EXPECT_TRUE(pages.contain(2 * kPage, 2 * kPage + 1));
  EXPECT_EQ(disk.questions, 1);
  pages.askAnew();
  EXPECT_TRUE(pages.contain(2 * kPage, 2 * kPage + 1));
  EXPECT_EQ(disk.questions, 2);
  EXPECT_EQ(disk.reads, 0);
}

TEST(PagesAtHand, WhatADiskGivesAtOnceIsWaitedFor) {
  Disk disk;
  disk.answer();
  PagesAtHand pages(kSize, disk.ask(), disk.read(), kAnyTime);
  EXPECT_TRUE(pages.contain(kPage - 1, kPage + 1));
  EXPECT_EQ(disk.reads, 2);
  // Up to the last byte, and not beyond it.
  EXPECT_TRUE(pages.contain((kPages - 1) * kPage, kSize + kPage));
  EXPECT_EQ(disk.reads, 3);
}

TEST(PagesAtHand, ADiskThatDoesNotAnswerIsNotWaitedForAndGivesEverythingWhenItDoes) {
  Disk disk;
  PagesAtHand pages(kSize, disk.ask(), disk.read());
  EXPECT_FALSE(pages.contain(0, 1));
  // Neither does what memory holds help as long as another part is missing.
  disk.isInMemory[1] = true;
  EXPECT_FALSE(pages.contain(kPage, kPage + 1));
  pages.askAnew();
  EXPECT_FALSE(pages.contain(0, 1));
  EXPECT_EQ(disk.reads, 0);
  disk.answer();
  while (!pages.contain(0, kSize))
    std::this_thread::yield();
  // One page, and all of them.
  EXPECT_EQ(disk.reads, 2);
}

TEST(PagesAtHand, PatienceIsForAllPagesTogether) {
  Disk disk;
  std::atomic<int> slowReads = 0;
  PagesAtHand pages(kSize, disk.ask(), [&](std::size_t from, std::size_t to) {
    // Each by itself would be within the patience.
    std::this_thread::sleep_for(PagesAtHand::kPatience * 2 / 3);
    if (to - from <= kPage) ++slowReads;
  });
  for (std::size_t page = 0; page < kPages; ++page)
    static_cast<void>(pages.contain(page * kPage, page * kPage + 1));
  EXPECT_LE(slowReads, 2);
}

TEST(PagesAtHand, AFileThatMemoryHasLostIsReadAgain) {
  const virtualdesktop::TemporaryDirectory directory;
  const auto file = directory.path() / "words";
  testing::writeFile(file, std::string(kSize, 'x'));
  const FileDescriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
  ASSERT_EQ(::fsync(descriptor.get()), 0);
  void* const mapping = ::mmap(nullptr, kSize, PROT_READ, MAP_PRIVATE, descriptor.get(), 0);
  ASSERT_NE(mapping, MAP_FAILED);
  ASSERT_EQ(::posix_fadvise(descriptor.get(), 0, 0, POSIX_FADV_DONTNEED), 0);
  std::vector<unsigned char> isResident(kPages);
  ASSERT_EQ(::mincore(mapping, kSize, isResident.data()), 0);
  if ((isResident[3] & 1) != 0) GTEST_SKIP() << "this file system keeps its files in memory";
  PagesAtHand pages(descriptor.get(), {static_cast<const char*>(mapping), kSize}, kAnyTime);
  EXPECT_TRUE(pages.contain(3 * kPage, 3 * kPage + 1));
  ASSERT_EQ(::mincore(mapping, kSize, isResident.data()), 0);
  EXPECT_EQ(isResident[3] & 1, 1);
  ::munmap(mapping, kSize);
}

}  // namespace
}  // namespace tessarok::posix

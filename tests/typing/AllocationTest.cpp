// Typing must not allocate: the system takes the tap away from a program that is slow now and
// then, and a keyboard corrector runs for months. Every allocation of this program is counted.

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <new>
#include <string>
#include <vector>

#include "desktops/layouts/KeyTable.h"
#include "desktops/plain/PlainEvent.h"
#include "desktops/virtual/Session.h"
#include "text/Text.h"
#include "typing/KeyTap.h"

namespace {

std::atomic<bool> counts = false;
std::atomic<long> allocations = 0;

void* allocate(std::size_t size) {
  if (counts) ++allocations;
  return std::malloc(size == 0 ? 1 : size);
}

}  // namespace

void* operator new(std::size_t size) {
  if (void* memory = allocate(size)) return memory;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return allocate(size);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
  std::free(memory);
}

namespace tessarok {
namespace {

using layouts::KeyTable;
using platform::EventType;

/// One key-down that lives on the stack.
class Key final : public plain::PlainEvent {
 public:
  Key(KeyCode keyCode, bool shift, char16_t unit) {
    code = keyCode;
    modifiers = shift ? 0x20000 : 0;
    payload = unit;
  }
  [[nodiscard]] std::unique_ptr<Event> copy() const override { return nullptr; }
};

class Proxy final : public platform::EventTapProxy {
 public:
  void post(const platform::Event&) override { ++posted; }
  int posted = 0;
};

/// The words of a list, but for those with ё: its key starts a pause.
std::vector<std::string> wordsOf(const std::string& file) {
  std::ifstream in(std::string(TESSAROK_TEST_DATA) + "/" + file);
  std::vector<std::string> words;
  for (std::string word; std::getline(in, word);) {
    if (word.find("ё") == std::string::npos) words.push_back(word);
  }
  return words;
}

class Typist {
 public:
  explicit Typist(const KeyTable& table) : table_(table) {}

  /// Types a word with a slip that is taken back, and the boundary after it.
  void type(const std::string& word, std::u16string_view boundary) {
    const auto units = text::utf16(word);
    for (const auto unit : units)
      press(unit);
    press(units.back());
    press(KeyTap::kDelete, false, u'\x7f');
    for (const auto unit : boundary)
      press(unit);
  }

  int letters = 0;
  Proxy proxy;

 private:
  void press(char16_t unit) {
    if (unit == u' ') return press(KeyTap::kSpace, false, u' ');
    const auto stroke = table_.strokeFor(unit);
    ASSERT_TRUE(stroke.has_value());
    press(stroke->code, stroke->shift, unit);
    ++letters;
  }
  void press(KeyCode code, bool shift, char16_t unit) {
    Key key(code, shift, unit);
    counts = true;
    KeyTap::shared().handle(&proxy, EventType::keyDown, &key);
    KeyTap::shared().handle(&proxy, EventType::keyUp, &key);
    counts = false;
  }

  const KeyTable& table_;
};

/// Types the words of a dictionary over and over on their own layout.
void expectNoAllocation(const char* layout, const KeyTable& table, const std::string& dictionary) {
  virtualdesktop::Session session(std::nullopt, std::filesystem::path(TESSAROK_TEST_DATA));
  session.launch();
  session.desktop().selectInputSource(layout);
  ASSERT_TRUE(session.delegate().tapRunning());
  const auto words = wordsOf(dictionary);
  ASSERT_GT(words.size(), 100u);
  Typist warmUp(table);
  for (std::size_t i = 0; i < 10; ++i)
    warmUp.type(words[i * 7], i % 2 == 0 ? u" " : u"! ");
  Typist typist(table);
  allocations = 0;
  for (std::size_t i = 0; typist.letters < 10'000; ++i) {
    typist.type(words[i % words.size()], i % 3 == 2 ? u"! " : u" ");
    ASSERT_EQ(allocations, 0) << words[i % words.size()];
  }
  EXPECT_EQ(typist.proxy.posted, 0);
  EXPECT_FALSE(KeyTap::shared().word().untrackableWord());
}

TEST(Allocation, TypingEnglishWordsAllocatesNothing) {
  expectNoAllocation("com.apple.keylayout.US", KeyTable::english(), "dict_en.txt");
}

TEST(Allocation, TypingRussianWordsAllocatesNothing) {
  expectNoAllocation("com.apple.keylayout.RussianWin", KeyTable::russian(), "dict_ru.txt");
}

TEST(Allocation, AreCounted) {
  allocations = 0;
  counts = true;
  const std::string text(100, 'x');
  counts = false;
  EXPECT_EQ(allocations, 1) << text;
}

}  // namespace
}  // namespace tessarok

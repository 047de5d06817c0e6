// A fast validator is trusted because a slow and obvious one says the same, on lists of every size
// around the pieces that the fast one works in and after every kind of damage.

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <pthread.h>
#include <random>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "words/DictFile.h"
#include "words/WordListScan.h"

namespace tessarok {
namespace {

using Random = std::mt19937;

std::vector<std::string> splitLines(const std::string& data) {
  std::vector<std::string> lines;
  std::string line;
  for (const char c : data) {
    if (c != '\n') {
      line += c;
      continue;
    }
    lines.push_back(line);
    line.clear();
  }
  if (!data.ends_with('\n')) lines.push_back(line);
  return lines;
}

bool isLetterAt(const std::string& line, std::size_t i, Language language) {
  static const std::string kRussian = "абвгдеёжзийклмнопрстуфхцчшщъыьэюя";
  if (language == Language::english) return line[i] >= 'a' && line[i] <= 'z';
  for (std::size_t letter = 0; letter < kRussian.size(); letter += 2) {
    if (line.compare(i, 2, kRussian, letter, 2) == 0) return true;
  }
  return false;
}

/// The first fault, found line by line and letter by letter; line 0 is no fault.
DataFault plainFault(const std::string& data, Language language) {
  if (data.empty()) return {0, "the file is empty"};
  const auto lines = splitLines(data);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const auto& line = lines[i];
    if (line.empty()) return {i + 1, "the line is empty"};
    if (line.back() == '\r') return {i + 1, kCrLfReason};
    for (std::size_t at = 0; at < line.size(); at += language == Language::russian ? 2 : 1) {
      if (isLetterAt(line, at, language)) continue;
      return {i + 1, language == Language::russian ? "only the letters а to я and ё are allowed"
                                                   : "only the letters a to z are allowed"};
    }
    if (i > 0 && std::lexicographical_compare(line.begin(), line.end(), lines[i - 1].begin(),
                                              lines[i - 1].end(), [](char a, char b) {
                                                return static_cast<unsigned char>(a) <
                                                       static_cast<unsigned char>(b);
                                              })) {
      return {i + 1,
              "the line sorts before the one above it (lines are in the order of their bytes)"};
    }
  }
  return {};
}

/// The text alone in its own memory, so that a sanitizer sees one byte read too many.
DataFault fastFault(const std::string& data, Language language) {
  const auto copy = std::make_unique<char[]>(data.size());
  std::memcpy(copy.get(), data.data(), data.size());
  return DictFile::findFault({copy.get(), data.size()}, language).value_or(DataFault{});
}

void expectSameFault(const std::string& data, Language language, const std::string& how) {
  const auto plain = plainFault(data, language);
  const auto fast = fastFault(data, language);
  ASSERT_EQ(fast.line, plain.line) << how << ", " << data.size() << " bytes";
  ASSERT_EQ(fast.reason, plain.reason) << how << ", line " << plain.line;
}

std::size_t below(Random& random, std::size_t limit) {
  return random() % limit;
}

std::string randomWord(Random& random, Language language) {
  static const std::string kRussian = "абпряё";
  // Few different letters, so that neighbours have long beginnings in common.
  const std::size_t letters = 1 + below(random, 3);
  const std::size_t longest = below(random, 20) == 0 ? 90 : 12;
  std::string word;
  const auto length = 1 + below(random, longest);
  for (std::size_t i = 0; i < length; ++i) {
    const auto letter = below(random, letters * 2);
    word += language == Language::russian ? kRussian.substr(2 * letter, 2)
                                          : std::string(1, "abcxyz"[letter]);
  }
  return word;
}

/// A good list of about `size` bytes, with some words twice.
std::string randomList(Random& random, std::size_t size, Language language) {
  std::vector<std::string> words;
  for (std::size_t bytes = 0; bytes < size; bytes += words.back().size() + 1) {
    const bool again = !words.empty() && below(random, 8) == 0;
    words.push_back(again ? words.back() : randomWord(random, language));
  }
  std::sort(words.begin(), words.end());
  std::string list;
  for (const auto& word : words)
    list += word + "\n";
  if (below(random, 2) == 0) list.pop_back();
  return list;
}

std::string damaged(Random& random, std::string list, Language language) {
  static const std::vector<std::string> kPieces = {
      "\n",   "\n\n",     "\r",       "\r\n",    "A", "z", std::string(1, '\0'),
      "{",    "`",        "а",        "я",       "ё", "Ё", "\xd0",
      "\xd1", "\xd1\x90", "\x80",     "\xff",    "ї", "-", " ",
      "\x0b", "\xd0\xaf", "\xd1\x92", "\xd2\x80"};
  const auto at = below(random, list.size());
  const auto& piece = kPieces[below(random, kPieces.size())];
  switch (below(random, 6)) {
    case 0:
      return list.replace(at, std::min(piece.size(), list.size() - at), piece);
    case 1:
      return list.insert(at, piece);
    case 2:
      return list.erase(at, 1 + below(random, 3));
    case 3:
      list[at] = static_cast<char>(random());
      return list;
    case 4:
      return list.substr(0, at);
    default:
      return list.insert(at, "\n" + randomWord(random, language) + "\n");
  }
}

/// Sizes around one, two and three pieces, and small ones.
std::size_t randomSize(Random& random) {
  constexpr std::size_t kPiece = 8192;
  if (below(random, 3) == 0) return 1 + below(random, 300);
  return kPiece * (1 + below(random, 3)) - 100 + below(random, 300);
}

TEST(WordListScan, AgreesWithAPlainCheckOnGoodAndOnDamagedLists) {
  Random random(20);
  int damagedLists = 0;
  for (int round = 0; round < 400; ++round) {
    const auto language = round % 2 == 0 ? Language::russian : Language::english;
    const auto list = randomList(random, randomSize(random), language);
    ASSERT_EQ(plainFault(list, language).line, 0u);
    expectSameFault(list, language, "good");
    for (int i = 0; i < 8; ++i) {
      const auto bad = damaged(random, list, language);
      expectSameFault(bad, language, "damaged");
      if (HasFatalFailure()) return;
      damagedLists += plainFault(bad, language).line > 0 ? 1 : 0;
    }
  }
  EXPECT_GT(damagedLists, 2000);
}

// Two threads share a list that is this long.
TEST(WordListScan, AgreesWithAPlainCheckWhereTwoHalvesMeet) {
  Random random(23);
  int damagedLists = 0;
  for (int round = 0; round < 40; ++round) {
    const auto language = round % 2 == 0 ? Language::russian : Language::english;
    const auto list = randomList(random, 270'000 + below(random, 20'000), language);
    expectSameFault(list, language, "good");
    for (int i = 0; i < 4; ++i) {
      const auto from = list.size() / 2 - 12'000;
      const auto bad = list.substr(0, from) + damaged(random, list.substr(from, 24'000), language) +
                       (i == 3 ? damaged(random, list.substr(from + 24'000), language)
                               : list.substr(from + 24'000));
      expectSameFault(bad, language, "damaged");
      if (HasFatalFailure()) return;
      damagedLists += plainFault(bad, language).line > 0 ? 1 : 0;
    }
  }
  EXPECT_GT(damagedLists, 100);
}

TEST(WordListScan, FindsOneWrongByteNearTheMiddleOfALongList) {
  Random random(24);
  for (const auto language : {Language::english, Language::russian}) {
    const auto list = randomList(random, 270'000, language);
    const auto middle = list.size() / 2;
    for (std::size_t at = middle - 40; at < middle + 60; ++at) {
      for (const char wrong : {'\n', 'b', '\xd0'}) {
        auto bad = list;
        bad[at] = wrong;
        expectSameFault(bad, language, "byte " + std::to_string(at));
        if (HasFatalFailure()) return;
      }
    }
  }
}

std::string repeated(const std::string& letter, std::size_t times) {
  std::string text;
  while (times-- > 0)
    text += letter;
  return text;
}

TEST(WordListScan, JudgesLongListsOfFewLines) {
  for (const auto language : {Language::english, Language::russian}) {
    const std::string first = language == Language::russian ? "а" : "a";
    const std::string last = language == Language::russian ? "в" : "c";
    const auto half = repeated(language == Language::russian ? "б" : "b", 150'000);
    expectSameFault(half + half, language, "one line");
    expectSameFault(half + "\n" + half, language, "two lines");
    expectSameFault(half + last + "\n" + half, language, "two lines in the wrong order");
    expectSameFault(first + "\n" + half + half + "\n", language, "a short line first");
    expectSameFault(half + half + "\n" + last + "\n", language, "a short line last");
    expectSameFault(half + half + "\n" + first + "\n", language, "that line in the wrong order");
  }
}

TEST(WordListScan, FindsOneWrongByteAnywhere) {
  Random random(21);
  for (const auto language : {Language::english, Language::russian}) {
    const auto list = randomList(random, 18'000, language);
    for (std::size_t at = 0; at < list.size(); at += 1 + below(random, 80)) {
      for (const char wrong : {'\n', '\r', 'b', '\xd0', '\x91', '\xbf'}) {
        auto bad = list;
        bad[at] = wrong;
        expectSameFault(bad, language, "byte " + std::to_string(at));
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST(WordListScan, AWrongByteInALongListEndsTheGoodPartBeforeItsLine) {
  std::string list;
  for (int i = 0; list.size() < 40'000; ++i) {
    std::string word = "aaaa";
    for (std::size_t at = 4, rest = static_cast<std::size_t>(i); at > 0; rest /= 26)
      word[--at] = static_cast<char>('a' + rest % 26);
    list += word + "\n";
  }
  ASSERT_GT(WordListScan::goodPrefix(list, Language::english), 30'000u);
  list[20'002] = 'B';
  EXPECT_LE(WordListScan::goodPrefix(list, Language::english), 20'000u);
  expectSameFault(list, Language::english, "a capital");
}

TEST(WordListScan, ComparesLinesThatDifferFarFromTheirStart) {
  for (const std::size_t common : {30u, 31u, 32u, 33u, 62u, 64u, 200u}) {
    std::string list;
    for (std::size_t words = 0; list.size() < 20'000; ++words)
      list += "a" + std::string(words / 25, 'b') + static_cast<char>('a' + words % 25) + "\n";
    const std::string start(common, 'c');
    for (const auto& [first, second] :
         {std::pair<std::string, std::string>{"a", "b"}, {"b", "a"}, {"", "a"}, {"a", ""}}) {
      auto data = start + first;
      data += "\n" + start + second + "\n";
      while (data.size() < 20'000)
        data += std::string(common, 'd') + "\n";
      expectSameFault(data, Language::english, "after " + std::to_string(common) + " common bytes");
    }
  }
}

TEST(WordListScan, ALineLongerThanAPieceIsJudgedToo) {
  const std::string longLine(30'000, 'b');
  expectSameFault("a\n" + longLine + "\n" + longLine + "c\nc\n", Language::english, "good");
  expectSameFault("a\n" + longLine + "c\n" + longLine + "\nc\n", Language::english, "wrong order");
  expectSameFault(longLine, Language::english, "a single line");
  expectSameFault(longLine + "B" + longLine, Language::english, "a capital");
}

#ifdef __GLIBC__
TEST(WordListScan, WhereNoThreadIsToBeHadALongListIsJudgedAllTheSame) {
  // No address space has room for such a stack.
  pthread_attr_t attributes;
  ASSERT_EQ(::pthread_attr_init(&attributes), 0);
  ASSERT_EQ(::pthread_attr_setstacksize(&attributes, std::size_t{1} << 50), 0);
  ASSERT_EQ(::pthread_setattr_default_np(&attributes), 0);
  ::pthread_attr_destroy(&attributes);
  ASSERT_THROW(std::thread([] {}), std::system_error);
  Random random(23);
  auto list = randomList(random, 1'000'000, Language::russian);
  EXPECT_GT(WordListScan::goodPrefix(list, Language::russian), list.size() - 9'000);
  list[200'000] = 'b';
  expectSameFault(list, Language::russian, "a wrong letter in the first half");
}
#endif

TEST(WordListScan, LeavesLittleOfAGoodListToThePlainCheck) {
  Random random(22);
  for (const auto language : {Language::english, Language::russian}) {
    for (const std::size_t size : {100'000u, 1'000'000u}) {
      const auto list = randomList(random, size, language);
      const auto good = WordListScan::goodPrefix(list, language);
      EXPECT_GT(good, list.size() - 9'000);
      EXPECT_EQ(list[good - 1], '\n');
    }
  }
}

}  // namespace
}  // namespace tessarok

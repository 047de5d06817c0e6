#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <set>

#include "tests/support/FakeDesktop.h"
#include "tests/support/TestFiles.h"
#include "words/Dict.h"
#include "words/DictFile.h"
#include "words/ResourceLocator.h"

namespace tessarok {
namespace {

using testing::FakeDesktop;

bool isValid(std::string_view data, Language language) {
  return !DictFile::findFault(data, language).has_value();
}

TEST(DictFile, FindsWholeLinesOnly) {
  FakeDesktop desktop;
  desktop.addResource("dict_en", "a\nab\nb");
  const DictFile dictionary("dict_en");
  EXPECT_TRUE(dictionary.isAvailable());
  EXPECT_TRUE(dictionary.contains("a"));
  EXPECT_TRUE(dictionary.contains("ab"));
  EXPECT_TRUE(dictionary.contains("b"));
  EXPECT_FALSE(dictionary.contains("abc"));
  EXPECT_FALSE(dictionary.contains(""));
  EXPECT_FALSE(dictionary.contains("a\nab"));
  EXPECT_FALSE(dictionary.contains("\n"));
}

/// More than the system reads from the disk at once.
std::string manyWords() {
  std::string words;
  for (char first = 'a'; first <= 'z'; ++first) {
    for (char second = 'a'; second <= 'z'; ++second) {
      for (char third = 'a'; third <= 'z'; ++third)
        words.append({first, second, third, '\n'});
    }
  }
  return words;
}

TEST(DictFile, CutShortWhileInUseIsUnavailableAndSaidSoOnce) {
  FakeDesktop desktop;
  desktop.addResource("dict_en", manyWords());
  const DictFile dictionary("dict_en");
  ASSERT_TRUE(dictionary.contains("zzz"));
  EXPECT_FALSE(dictionary.noticeChange());
  std::filesystem::resize_file(*ResourceLocator::find("dict_en"), 0);
  EXPECT_FALSE(dictionary.contains("zzz"));
  EXPECT_FALSE(dictionary.isAvailable());
  EXPECT_TRUE(dictionary.noticeChange());
  EXPECT_FALSE(dictionary.noticeChange());
  EXPECT_EQ(desktop.systemLog().take(),
            (std::vector<std::string>{"Tessarok: dict_en.txt was changed while in use; automatic "
                                      "layout correction disabled until the next start"}));
}

TEST(DictFile, WrittenInPlaceItIsUnavailableWhenThatIsNoticed) {
  FakeDesktop desktop;
  desktop.addResource("dict_en", "a\nb\n");
  const DictFile dictionary("dict_en");
  testing::writeFile(*ResourceLocator::find("dict_en"), "a\nb\nc\n");
  EXPECT_TRUE(dictionary.noticeChange());
  EXPECT_FALSE(dictionary.isAvailable());
  EXPECT_FALSE(dictionary.contains("a"));
}

TEST(DictFile, ReplacedByAnotherFileItStaysWhatItWas) {
  FakeDesktop desktop;
  desktop.addResource("dict_en", "a\nb\n");
  const DictFile dictionary("dict_en");
  const auto file = *ResourceLocator::find("dict_en");
  ASSERT_FALSE(desktop.files().writeAtomically(file, "c\n"));
  EXPECT_FALSE(dictionary.noticeChange());
  EXPECT_TRUE(dictionary.contains("a"));
}

TEST(DictFile, AnUpperCaseWordIsNotFound) {
  FakeDesktop desktop;
  desktop.addResource("dict_ru", "мир\n");
  const DictFile dictionary("dict_ru");
  EXPECT_TRUE(dictionary.contains("мир"));
  EXPECT_FALSE(dictionary.contains("Мир"));
  EXPECT_FALSE(dictionary.contains(" мир"));
}

TEST(DictFile, AMissingFileIsSilentlyUnavailable) {
  FakeDesktop desktop;
  const DictFile dictionary("dict_en");
  EXPECT_FALSE(dictionary.isAvailable());
  EXPECT_FALSE(dictionary.contains("a"));
  EXPECT_TRUE(desktop.systemLog().take().empty());
}

TEST(DictFile, AnUnreadableLocationIsSilentlyUnavailable) {
  FakeDesktop desktop;
  desktop.bundle().resources["dict_en.txt"] = desktop.home();  // a folder
  const DictFile dictionary("dict_en");
  EXPECT_FALSE(dictionary.isAvailable());
  EXPECT_TRUE(desktop.systemLog().take().empty());
}

TEST(DictFile, AnInvalidFileIsUnavailableAndReported) {
  FakeDesktop desktop;
  desktop.addResource("dict_ru", "мир\nдом\n");
  const DictFile dictionary("dict_ru");
  EXPECT_FALSE(dictionary.isAvailable());
  EXPECT_FALSE(dictionary.contains("мир"));
  EXPECT_EQ(desktop.systemLog().take(),
            std::vector<std::string>{"Tessarok: invalid dictionary resource dict_ru; automatic "
                                     "layout correction disabled"});
}

TEST(DictFile, AnEmptyFileIsInvalid) {
  FakeDesktop desktop;
  desktop.addResource("dict_en", "");
  const DictFile dictionary("dict_en");
  EXPECT_FALSE(dictionary.isAvailable());
  EXPECT_EQ(desktop.systemLog().take(),
            std::vector<std::string>{"Tessarok: invalid dictionary resource dict_en; automatic "
                                     "layout correction disabled"});
}

TEST(DictFile, OnlyTheRussianDictionaryIsHeldToTheRussianAlphabet) {
  EXPECT_EQ(DictFile::languageOf("dict_ru"), Language::russian);
  EXPECT_EQ(DictFile::languageOf("dict_en"), Language::english);
  EXPECT_EQ(DictFile::languageOf("dict_ru2"), Language::english);
}

TEST(DictFile, LinesAreInTheOrderOfTheirBytes) {
  EXPECT_TRUE(isValid("a\nab\nb", Language::english));
  EXPECT_FALSE(isValid("ab\na", Language::english));
  EXPECT_FALSE(isValid("b\na\n", Language::english));
  // Byte order puts ё behind я.
  EXPECT_TRUE(isValid("я\nё\n", Language::russian));
  EXPECT_FALSE(isValid("ё\nя\n", Language::russian));
  EXPECT_FALSE(isValid("е\nё\nж\n", Language::russian));
}

TEST(DictFile, ARepeatedLineIsValidAndFound) {
  FakeDesktop desktop;
  desktop.addResource("dict_en", "a\nb\nb\nc\n");
  const DictFile dictionary("dict_en");
  EXPECT_TRUE(dictionary.isAvailable());
  EXPECT_TRUE(dictionary.contains("b"));
  EXPECT_TRUE(dictionary.contains("c"));
}

TEST(DictFile, TheLastLineMayEndWithALineBreakOrNot) {
  EXPECT_TRUE(isValid("a\n", Language::english));
  EXPECT_TRUE(isValid("a", Language::english));
  EXPECT_FALSE(isValid("a\n\n", Language::english));
}

TEST(DictFile, NoLineIsEmpty) {
  EXPECT_FALSE(isValid("\na", Language::english));
  EXPECT_FALSE(isValid("a\n\nb", Language::english));
  EXPECT_FALSE(isValid("\n", Language::english));
}

TEST(DictFile, ForeignCharactersMakeAFileInvalid) {
  for (const std::string_view english :
       {"don't", "A", "a b", "a-b", "a\r\nb", "a1", "{", "я", "a\xff"}) {
    EXPECT_FALSE(isValid(english, Language::english)) << english;
  }
  for (const std::string_view russian :
       {"Мир", "мir", "мир\r\n", "м-р", "ї", "Ё", "\xd0", "мир\xd0", "\xd1\x90", "\xd1\x92",
        "\xd0\xaf", "\xd0\xc0", "\xd1\x7f", "\xd0\n"}) {
    EXPECT_FALSE(isValid(russian, Language::russian)) << russian;
  }
  EXPECT_TRUE(isValid("а\nп\nр\nя\nё", Language::russian));
}

TEST(DictFile, AFaultNamesItsLine) {
  const auto fault = DictFile::findFault("a\nb\nB\n", Language::english);
  ASSERT_TRUE(fault.has_value());
  EXPECT_EQ(fault->line, 3u);
  EXPECT_FALSE(fault->reason.empty());
  EXPECT_EQ(DictFile::findFault("a\r\nb\r\n", Language::english)->reason, kCrLfReason);
  EXPECT_EQ(DictFile::findFault("", Language::english)->line, 0u);
  EXPECT_EQ(DictFile::findFault("a\n\n", Language::english)->line, 2u);
  EXPECT_EQ(DictFile::findFault("b\na", Language::english)->line, 2u);
}

// The binary search over bytes against a set of words.
TEST(DictFile, FindsExactlyTheWordsOfAnyFile) {
  FakeDesktop desktop;
  std::mt19937 random(1);
  for (int round = 0; round < 50; ++round) {
    std::set<std::string> words;
    const auto size = 1 + random() % 60;
    while (words.size() < size) {
      std::string word;
      const auto length = 1 + random() % 5;
      for (std::size_t i = 0; i < length; ++i)
        word += static_cast<char>('a' + random() % 3);
      words.insert(word);
    }
    std::string text;
    for (const auto& word : words)
      text += word + "\n";
    if (round % 2 == 0) text.pop_back();
    desktop.addResource("dict_en", text);
    const DictFile dictionary("dict_en");
    ASSERT_TRUE(dictionary.isAvailable());
    for (int i = 0; i < 200; ++i) {
      std::string word;
      const auto length = 1 + random() % 6;
      for (std::size_t j = 0; j < length; ++j)
        word += static_cast<char>('a' + random() % 4);
      EXPECT_EQ(dictionary.contains(word), words.contains(word)) << word << " in\n" << text;
    }
    for (const auto& word : words)
      EXPECT_TRUE(dictionary.contains(word)) << word;
  }
}

TEST(Dict, LoadsEachDictionaryOnce) {
  FakeDesktop desktop;
  desktop.addResource("dict_en", "hello\n");
  desktop.addResource("dict_ru", "привет\n");
  EXPECT_TRUE(Dict::en().contains("hello"));
  EXPECT_TRUE(Dict::ru().contains("привет"));
  EXPECT_TRUE(Dict::of(Language::russian).contains("привет"));
  desktop.addResource("dict_en", "world\n");
  EXPECT_TRUE(Dict::en().contains("hello"));
  EXPECT_EQ(desktop.files().reads["dict_en.txt"], 1);
  EXPECT_EQ(desktop.files().reads["dict_ru.txt"], 1);
}

}  // namespace
}  // namespace tessarok

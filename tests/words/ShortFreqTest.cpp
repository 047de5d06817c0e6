#include <gtest/gtest.h>

#include "tests/support/FakeDesktop.h"
#include "words/ShortFreq.h"

namespace tessarok {
namespace {

using testing::FakeDesktop;

TEST(ShortFreq, TakesWordsOfTwoOrThreeLetters) {
  const auto parsed = ShortFreq::parse("the\n\n  OF \nto", Language::english);
  EXPECT_FALSE(parsed.fault.has_value());
  EXPECT_EQ(parsed.words, (WordSet{"of", "the", "to"}));
  EXPECT_EQ(ShortFreq::parse("Ещё\nна\n", Language::russian).words, (WordSet{"ещё", "на"}));
}

TEST(ShortFreq, OneBadLineRejectsTheWholeFile) {
  for (const std::string_view bad : {"the\na\n", "the\nfour\n", "the\nto1\n", "the\nна\n",
                                     "the\ni'm\n", "the\nan of\n", "# words\nthe\n"}) {
    const auto parsed = ShortFreq::parse(bad, Language::english);
    EXPECT_TRUE(parsed.words.empty()) << bad;
    ASSERT_TRUE(parsed.fault.has_value()) << bad;
  }
  EXPECT_EQ(ShortFreq::parse("the\nfour\n", Language::english).fault->line, 2u);
  EXPECT_TRUE(ShortFreq::parse("на\nof\n", Language::russian).words.empty());
  EXPECT_TRUE(ShortFreq::parse("на\nї1\n", Language::russian).words.empty());
}

TEST(ShortFreq, CrLfLineEndsMakeOneOverlongLine) {
  EXPECT_TRUE(ShortFreq::parse("the\r\nof\r\n", Language::english).words.empty());
  EXPECT_EQ(ShortFreq::parse("the\r\nof\r\n", Language::english).fault->reason, kCrLfReason);
}

TEST(ShortFreq, AFileWithoutWordsIsEmpty) {
  EXPECT_TRUE(ShortFreq::parse("", Language::english).words.empty());
  EXPECT_TRUE(ShortFreq::parse(" \n\n", Language::english).words.empty());
  EXPECT_TRUE(ShortFreq::parse("", Language::english).fault.has_value());
}

TEST(ShortFreq, EachSetIsReadOnceAndAMissingOneIsEmpty) {
  FakeDesktop desktop;
  desktop.addResource("freq_short_en", "the\n");
  EXPECT_EQ(ShortFreq::en(), WordSet{"the"});
  EXPECT_TRUE(ShortFreq::ru().empty());
  desktop.addResource("freq_short_en", "of\n");
  desktop.addResource("freq_short_ru", "на\n");
  EXPECT_EQ(ShortFreq::en(), WordSet{"the"});
  EXPECT_TRUE(ShortFreq::ru().empty());
  EXPECT_TRUE(desktop.systemLog().take().empty());
}

TEST(ShortFreq, AFileThatIsNotUtf8IsEmpty) {
  FakeDesktop desktop;
  desktop.addResource("freq_short_en", "the\n\xff\xfe\n");
  EXPECT_TRUE(ShortFreq::en().empty());
}

TEST(ShortFreq, AFileThatCannotBeReadIsEmpty) {
  FakeDesktop desktop;
  desktop.bundle().resources["freq_short_en.txt"] = desktop.home();  // a folder
  EXPECT_TRUE(ShortFreq::en().empty());
  EXPECT_TRUE(desktop.systemLog().take().empty());
}

TEST(ShortFreq, MarksOfNGramsAreNoLetters) {
  EXPECT_TRUE(ShortFreq::parse("^a\n", Language::english).words.empty());
  EXPECT_TRUE(ShortFreq::parse("a$\n", Language::english).words.empty());
}

}  // namespace
}  // namespace tessarok

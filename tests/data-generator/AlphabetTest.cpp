#include "Alphabet.h"
#include "TestSupport.h"

namespace tessarok::makedata::test {
namespace {

TEST(Alphabet, HoldsTheLettersOfItsLanguage) {
  EXPECT_EQ(Alphabet::english().size(), 26U);
  EXPECT_EQ(Alphabet::russian().size(), 33U);
  for (std::size_t i = 0; i < Alphabet::russian().size(); ++i) {
    EXPECT_EQ(Alphabet::russian().indexOf(Alphabet::russian().letterAt(i)), i);
  }
  EXPECT_EQ(Alphabet::russian().indexOf(U'a'), std::nullopt);
  EXPECT_EQ(Alphabet::english().indexOf(U'A'), std::nullopt);
}

TEST(Alphabet, TakesOnlyItsLowerCaseLetters) {
  EXPECT_TRUE(Alphabet::english().isWord(U"hello"));
  EXPECT_TRUE(Alphabet::russian().isWord(U"ёж"));
  for (const char32_t* word : {U"", U"Hello", U"don't", U"café", U"x86", U"e-mail", U"привет"}) {
    EXPECT_FALSE(Alphabet::english().isWord(word)) << encodeUtf8(word);
  }
  for (const char32_t* word : {U"", U"Ёж", U"кое-как", U"hello", U"їжак"}) {
    EXPECT_FALSE(Alphabet::russian().isWord(word)) << encodeUtf8(word);
  }
}

TEST(Alphabet, ALoneLetterIsAWordOnlyWhenPeopleWriteIt) {
  EXPECT_TRUE(Alphabet::english().isWord(U"a"));
  EXPECT_TRUE(Alphabet::english().isWord(U"i"));
  EXPECT_FALSE(Alphabet::english().isWord(U"q"));
  EXPECT_TRUE(Alphabet::russian().isWord(U"я"));
  EXPECT_FALSE(Alphabet::russian().isWord(U"ъ"));
}

TEST(Alphabet, WithoutYoReplacesEveryYo) {
  EXPECT_EQ(withoutYo(U"трёхзвёздный"), U"трехзвездный");
  EXPECT_EQ(withoutYo(U"елка"), std::nullopt);
}

}  // namespace
}  // namespace tessarok::makedata::test

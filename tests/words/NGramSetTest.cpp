#include <array>
#include <gtest/gtest.h>
#include <set>
#include <string>

#include "words/NGramSet.h"

namespace tessarok {
namespace {

using Symbol = NGramSet::Symbol;

TEST(NGramSet, EveryLetterOfALanguageHasASymbolOfItsOwn) {
  std::set<Symbol> russian;
  for (const std::string letter :
       {"а", "б", "в", "г", "д", "е", "ё", "ж", "з", "и", "й", "к", "л", "м", "н", "о", "п",
        "р", "с", "т", "у", "ф", "х", "ц", "ч", "ш", "щ", "ъ", "ы", "ь", "э", "ю", "я"}) {
    const auto symbol = NGramSet::symbol(letter, Language::russian);
    EXPECT_GT(symbol, 0);
    EXPECT_LT(symbol, NGramSet::kStart);
    russian.insert(symbol);
  }
  EXPECT_EQ(russian.size(), 33u);
  std::set<Symbol> english;
  for (char letter = 'a'; letter <= 'z'; ++letter)
    english.insert(NGramSet::symbol(std::string(1, letter), Language::english));
  EXPECT_EQ(english.size(), 26u);
  EXPECT_FALSE(english.contains(0));
}

TEST(NGramSet, MarksAreTheSameInBothLanguages) {
  for (const auto language : {Language::english, Language::russian}) {
    EXPECT_EQ(NGramSet::symbol("^", language), NGramSet::kStart);
    EXPECT_EQ(NGramSet::symbol("$", language), NGramSet::kEnd);
  }
}

TEST(NGramSet, EverythingElseHasNoSymbol) {
  for (const std::string other : {"", "A", "1", "-", "я", "e\u0301", "ab"}) {
    EXPECT_EQ(NGramSet::symbol(other, Language::english), 0) << other;
  }
  for (const std::string other : {"Я", "a", "ї", "и\u0306"}) {
    EXPECT_EQ(NGramSet::symbol(other, Language::russian), 0) << other;
  }
}

TEST(NGramSet, HoldsWhatWasInsertedAndNothingElse) {
  NGramSet set;
  EXPECT_TRUE(set.empty());
  const std::array<Symbol, 3> abc{1, 2, 3};
  set.insert(abc);
  set.insert(abc);
  EXPECT_EQ(set.size(), 1u);
  EXPECT_TRUE(set.contains(abc));
  EXPECT_FALSE(set.contains(std::array<Symbol, 3>{3, 2, 1}));
  EXPECT_FALSE(set.contains(std::array<Symbol, 3>{1, 2, 4}));
}

TEST(NGramSet, TheHighestSymbolsFit) {
  NGramSet set;
  const std::array<Symbol, 3> last{NGramSet::kEnd, NGramSet::kEnd, NGramSet::kEnd};
  set.insert(last);
  EXPECT_TRUE(set.contains(last));
  EXPECT_EQ(set.size(), 1u);
}

TEST(NGramSet, NothingWithAForeignCharacterIsEverContained) {
  NGramSet set;
  set.insert(std::array<Symbol, 2>{1, 2});
  EXPECT_FALSE(set.contains(std::array<Symbol, 3>{0, 1, 2}));
  EXPECT_FALSE(set.contains(std::array<Symbol, 2>{0, 2}));
}

}  // namespace
}  // namespace tessarok

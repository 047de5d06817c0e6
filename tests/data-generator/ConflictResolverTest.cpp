#include <gtest/gtest.h>

#include "ConflictResolver.h"
#include "KeyText.h"

namespace tessarok::makedata::test {
namespace {

/// Words with their weights, in both languages.
class ConflictResolverTest : public ::testing::Test {
 protected:
  void english(const std::string& word, double perMillion) {
    english_.words.insert(word);
    english_.ngrams.add(word, 1);
    if (word.size() <= 3) english_.shortWords.insert(word);
    englishWeights_[word] = perMillion;
  }
  void russian(const std::string& word, double perMillion) {
    const auto keys = keysOf(word);
    russian_.words.insert(keys);
    russian_.ngrams.add(keys, 1);
    if (keys.size() <= 3) russian_.shortWords.insert(keys);
    russianWeights_[keys] = perMillion;
  }
  void resolve() {
    ConflictResolver resolver(english_, russian_, englishWeights_, russianWeights_);
    resolver.resolve();
    findings_ = resolver.findings();
  }
  bool hasRussian(const std::string& word) const { return russian_.words.contains(keysOf(word)); }
  bool hasEnglish(const std::string& word) const { return english_.words.contains(word); }

  LanguageModel english_;
  LanguageModel russian_;
  Weights englishWeights_;
  Weights russianWeights_;
  std::vector<ConflictResolver::Finding> findings_;
};

TEST_F(ConflictResolverTest, DropsARareFormWithTheKeysOfAFrequentWord) {
  english("the", 50'000);
  russian("еру", 0.1);
  resolve();
  EXPECT_FALSE(hasRussian("еру"));
  ASSERT_EQ(findings_.size(), 1U);
  EXPECT_EQ(findings_[0].what, "dropped (0.10 per million): the keys of the (50000.00)");
}

TEST_F(ConflictResolverTest, DropsARareEnglishWordForAFrequentRussianOne) {
  english("tot", 0.1);
  russian("еще", 500);
  resolve();
  EXPECT_FALSE(hasEnglish("tot"));
  EXPECT_TRUE(hasRussian("еще"));
}

TEST_F(ConflictResolverTest, DropsAnEnglishWordThatIsFarRarerThanTheRussianOne) {
  english("dbl", 4);
  russian("вид", 900);
  english("tot", 8);
  russian("еще", 400);
  resolve();
  EXPECT_FALSE(hasEnglish("dbl"));
  EXPECT_TRUE(hasEnglish("tot"));
}

TEST_F(ConflictResolverTest, DropsARareWordThatInitialsBecome) {
  english("be", 5'000);
  russian("кюсю", 0.1);
  russian("мюсли", 0.1);
  resolve();
  EXPECT_FALSE(hasRussian("кюсю"));
  EXPECT_TRUE(hasRussian("мюсли"));
}

TEST_F(ConflictResolverTest, KeepsBothWhenPeopleTypeBoth) {
  english("here", 700);
  russian("руку", 90);
  resolve();
  EXPECT_TRUE(hasEnglish("here"));
  EXPECT_TRUE(hasRussian("руку"));
  ASSERT_EQ(findings_.size(), 1U);
  EXPECT_EQ(findings_[0].word, "руку = here");
}

TEST_F(ConflictResolverTest, KeepsARareWordWhenTheOtherIsNotMuchMore) {
  english("ken", 5);
  russian("лут", 0.1);
  resolve();
  EXPECT_TRUE(hasEnglish("ken"));
  EXPECT_TRUE(hasRussian("лут"));
}

TEST_F(ConflictResolverTest, DropsAShortWordThatAFrequentWordWithAFullStopBecomes) {
  english("it", 10'000);
  russian("шею", 15);
  resolve();
  EXPECT_FALSE(hasRussian("шею"));
}

TEST_F(ConflictResolverTest, DropsAnEndingThatTurnsWordsWithAFullStopIntoRussian) {
  english("there", 1'000);
  russian("кую", 1);
  // The letters of "ерукую" look Russian.
  for (const char* word : {"ерик", "ерун", "рука", "круку", "куку", "пукую"})
    russian(word, 10);
  resolve();
  EXPECT_FALSE(hasRussian("кую"));
}

TEST_F(ConflictResolverTest, KeepsAFrequentWordThatARareOneWithAFullStopBecomes) {
  english("k.", 0);
  english_.words.erase("k.");
  english("kto", 0);
  russian("люблю", 500);
  resolve();
  EXPECT_TRUE(hasRussian("люблю"));
}

TEST_F(ConflictResolverTest, LeavesOutALongWordThatItsLettersSayEnoughOf) {
  english("tree", 50);
  // Every letter group of the long word is one of the frequent one, and its end is a word.
  russian("переперевыборный", 5);
  russian("выборный", 5);
  russian("перевыборныйный", 0);
  russian("перевыборная", 0);
  russian_.ngrams.setFloors({0, 0});
  russian("ный", 1);
  resolve();
  EXPECT_FALSE(hasRussian("перевыборныйный"));
  EXPECT_TRUE(hasRussian("переперевыборный"));
  EXPECT_TRUE(hasRussian("перевыборная"));
}

}  // namespace
}  // namespace tessarok::makedata::test

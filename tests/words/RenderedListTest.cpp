#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>
#include <string>

#include "words/RenderedList.h"
#include "words/WordSet.h"

namespace tessarok {
namespace {

using Counts = std::map<std::string, std::int64_t, std::less<>>;

void appendWord(const std::string& word, std::string& text) {
  text += word;
}

void appendCount(const Counts::value_type& record, std::string& text) {
  text += record.first + "\t" + std::to_string(record.second);
}

std::string plainText(const WordSet& words) {
  std::string text;
  for (const auto& word : words)
    text += word + "\n";
  return text.empty() ? "\n" : text;
}

std::string plainText(const Counts& counts) {
  std::string text;
  for (const auto& [word, count] : counts)
    text += word + "\t" + std::to_string(count) + "\n";
  return text.empty() ? "\n" : text;
}

TEST(RenderedList, AnEmptyListIsALineBreak) {
  WordSet words;
  RenderedList<WordSet> list(words, &appendWord);
  EXPECT_EQ(list.snapshot().text(), "\n");
  words.insert("a");
  list.render("a");
  EXPECT_EQ(list.snapshot().text(), "a\n");
  words.erase("a");
  list.render("a");
  EXPECT_EQ(list.snapshot().text(), "\n");
}

TEST(RenderedList, TakesTheRecordsInThatThereAre) {
  const WordSet words = {"b", "a"};
  EXPECT_EQ(RenderedList<WordSet>(words, &appendWord).snapshot().text(), "a\nb\n");
}

TEST(RenderedList, ASnapshotStaysAsItWas) {
  WordSet words = {"b"};
  RenderedList<WordSet> list(words, &appendWord);
  const auto before = list.snapshot();
  words = {"a", "b", "c"};
  list.renderAll();
  EXPECT_EQ(before.text(), "b\n");
  EXPECT_EQ(list.snapshot().text(), "a\nb\nc\n");
}

// Every change by itself, against the whole text written anew: thousands of words come and most
// of them go again, so that pieces are split, emptied and filled once more.
TEST(RenderedList, FollowsEveryChange) {
  std::mt19937 random(3);
  Counts counts;
  RenderedList<Counts> list(counts, &appendCount);
  const auto randomWord = [&] { return std::to_string(random() % 3000); };
  for (int change = 0; change < 12'000; ++change) {
    const auto word = randomWord();
    // First the list grows, then it shrinks.
    if (static_cast<int>(random() % 12'000) >= change) {
      counts[word] = static_cast<std::int64_t>(1 + random() % 3);
    } else {
      counts.erase(word);
    }
    list.render(word);
    if (change % 50 == 0) {
      ASSERT_EQ(list.snapshot().text(), plainText(counts)) << change;
    }
  }
  EXPECT_EQ(list.snapshot().text(), plainText(counts));
}

TEST(RenderedList, WordsMayComeInOrder) {
  for (const bool downwards : {false, true}) {
    WordSet words;
    RenderedList<WordSet> list(words, &appendWord);
    for (int i = 0; i < 2000; ++i) {
      const auto word = std::to_string(10'000 + (downwards ? -i : i));
      words.insert(word);
      list.render(word);
    }
    EXPECT_EQ(list.snapshot().text(), plainText(words));
  }
}

}  // namespace
}  // namespace tessarok

#include <gtest/gtest.h>

#include "SentenceSplitter.h"
#include "Typography.h"

namespace tessarok::measure::test {
namespace {

using Sentences = std::vector<std::string>;

TEST(SentenceSplitter, CutsBeforeACapital) {
  EXPECT_EQ(splitSentences("Один. Два! Три? четыре"), (Sentences{"Один.", "Два!", "Три? четыре"}));
  EXPECT_EQ(splitSentences("He said \"No.\" Then he left."),
            (Sentences{"He said \"No.\"", "Then he left."}));
}

TEST(SentenceSplitter, LeavesNumbersAndAddressesWhole) {
  EXPECT_EQ(splitSentences("Version 1.5 of example.org is out"),
            (Sentences{"Version 1.5 of example.org is out"}));
}

TEST(SentenceSplitter, TakesTextOfOneLanguageOnly) {
  EXPECT_TRUE(isSentenceOf("Привет, мир!", Language::russian));
  EXPECT_FALSE(isSentenceOf("Привет, world!", Language::russian));
  EXPECT_FALSE(isSentenceOf("Hello, мир!", Language::english));
  EXPECT_FALSE(isSentenceOf("Hello, café owner!", Language::english));
}

TEST(SentenceSplitter, WantsTwoWords) {
  EXPECT_FALSE(isSentenceOf("Привет", Language::russian));
  EXPECT_FALSE(isSentenceOf("a b c d", Language::english));
  EXPECT_TRUE(isSentenceOf("so it", Language::english));
}

TEST(SentenceSplitter, RefusesWhatTheKeyboardDoesNotHave) {
  EXPECT_FALSE(isSentenceOf("Пять € за штуку", Language::russian));
  EXPECT_FALSE(isSentenceOf("Файл {имя} найден", Language::russian));
  EXPECT_TRUE(isSentenceOf("File {name} found", Language::english));
}

TEST(Typography, IsThatOfAKeyboard) {
  EXPECT_EQ(asTyped("«Так» — сказал… он"), "\"Так\" - сказал... он");
  EXPECT_EQ(asTyped("  don’t\t stop \n"), "don't stop");
}

}  // namespace
}  // namespace tessarok::measure::test

#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <utf8proc.h>
#include <vector>

#include "tests/support/Growth.h"
#include "text/Text.h"

namespace tessarok::text {
namespace {

std::vector<std::string> charactersOf(std::string_view text) {
  std::vector<std::string> all;
  for (const auto character : Characters(text))
    all.emplace_back(character);
  return all;
}

using List = std::vector<std::string>;

TEST(Text, LettersOfBothAlphabetsAreCharactersOfTheirOwn) {
  EXPECT_EQ(charactersOf("aБ,ё"), (List{"a", "Б", ",", "ё"}));
  EXPECT_EQ(count("привет, hello"), 13u);
  EXPECT_EQ(count(""), 0u);
}

TEST(Text, CombiningMarksBelongToTheLetterBefore) {
  EXPECT_EQ(charactersOf("e\u0301x"), (List{"e\u0301", "x"}));
  EXPECT_EQ(charactersOf("и\u0306т"), (List{"и\u0306", "т"}));
  EXPECT_EQ(count("a\u0301\u0302\u0303"), 1u);
  // A mark at the very start stands alone.
  EXPECT_EQ(charactersOf("\u0301a"), (List{"\u0301", "a"}));
}

TEST(Text, EmojiFamiliesAreOneCharacter) {
  EXPECT_EQ(charactersOf("👩‍👩‍👧‍👦!"), (List{"👩‍👩‍👧‍👦", "!"}));
  EXPECT_EQ(charactersOf("👍🏽👍"), (List{"👍🏽", "👍"}));
  EXPECT_EQ(charactersOf("❤️a"), (List{"❤️", "a"}));
}

TEST(Text, FlagsArePairsOfRegionalIndicators) {
  EXPECT_EQ(charactersOf("🇷🇺🇬🇧"), (List{"🇷🇺", "🇬🇧"}));
  EXPECT_EQ(count("🇷🇺🇬🇧🇫"), 3u);
}

TEST(Text, CrLfIsOneCharacterAndALoneOneEach) {
  EXPECT_EQ(charactersOf("a\r\nb"), (List{"a", "\r\n", "b"}));
  EXPECT_EQ(charactersOf("\n\r"), (List{"\n", "\r"}));
}

TEST(Text, HangulSyllablesComposeFromJamo) {
  EXPECT_EQ(count("\u1112\u1161\u11ab\u1100\u1173\u11af"), 2u);
  EXPECT_EQ(count("한글"), 2u);
}

TEST(Text, BytesThatAreNotUtf8CountAsOneEach) {
  EXPECT_EQ(count("a\xff\xfe"), 3u);
  EXPECT_EQ(count("\x80\x80"), 2u);
  EXPECT_EQ(charactersOf("\xd0"), (List{"\xd0"}));
  EXPECT_EQ(charactersOf("\xd0я"), (List{"\xd0", "я"}));
  EXPECT_FALSE(isLetter("\xff"));
  EXPECT_FALSE(singleScalar("\xff").has_value());
}

TEST(Text, TheLastCharacterIsTheOneThatForwardReadingFinds) {
  const List texts = {
      "a",
      "привет",
      "e\u0301",
      "xe\u0301",
      "👩‍👩‍👧‍👦",
      "a👩‍👩‍👧‍👦",
      "🇷🇺🇬🇧",
      "🇷🇺🇬🇧🇫",
      "\r\n",
      "a\r\n",
      "\u1112\u1161\u11ab",
      "a\xff",
      "a\x80\x80",
      "\x80\x80\x80",
      "я\x80",
      "\xf0\x9f\x98",
      "ab\xd0",
      "👍🏽",
      "1\u0301",
      " \u0301",
      "\u0301",
  };
  for (const auto& text : texts) {
    const auto all = charactersOf(text);
    EXPECT_EQ(lastCharacter(text), all.back()) << ::testing::PrintToString(text);
    EXPECT_EQ(withoutLast(text, 1).size(), text.size() - all.back().size());
    EXPECT_EQ(firstCharacter(text), all.front());
  }
}

TEST(Text, CutsWholeCharactersFromTheEnd) {
  EXPECT_EQ(withoutLast("привет,", 1), "привет");
  EXPECT_EQ(withoutLast("ae\u0301👩‍👧", 2), "a");
  EXPECT_EQ(withoutLast("ab", 5), "");
  EXPECT_EQ(withoutLast("ab", 0), "ab");
  EXPECT_EQ(last("привет", 2), "ет");
  EXPECT_EQ(last("ab", 5), "ab");
  EXPECT_EQ(last("ab", 0), "");
  EXPECT_EQ(lastCharacter(""), "");
  EXPECT_EQ(firstCharacter(""), "");
}

TEST(Text, ASingleScalarIsNotACharacterOfSeveral) {
  EXPECT_EQ(singleScalar("я"), U'я');
  EXPECT_EQ(singleScalar("😀"), U'😀');
  EXPECT_FALSE(singleScalar("e\u0301").has_value());
  EXPECT_FALSE(singleScalar("ab").has_value());
  EXPECT_FALSE(singleScalar("").has_value());
}

TEST(Text, KnowsLettersNumbersAndCase) {
  EXPECT_TRUE(isLetter("ї"));
  EXPECT_TRUE(isLetter("e\u0301"));
  EXPECT_TRUE(isLetter("ʰ"));
  EXPECT_TRUE(isLetter("字"));
  EXPECT_FALSE(isLetter("1"));
  EXPECT_FALSE(isLetter("_"));
  EXPECT_FALSE(isLetter(""));
  EXPECT_TRUE(isNumber("7"));
  EXPECT_TRUE(isNumber("Ⅷ"));
  EXPECT_TRUE(isNumber("½"));
  EXPECT_FALSE(isNumber("a"));
  EXPECT_TRUE(isUppercase("Ё"));
  EXPECT_FALSE(isUppercase("ё"));
  EXPECT_TRUE(isLowercase("ё"));
  EXPECT_FALSE(isLowercase("1"));
  EXPECT_TRUE(isAsciiLetter("z"));
  EXPECT_FALSE(isAsciiLetter("é"));
  EXPECT_FALSE(isAsciiLetter("e\u0301"));
  EXPECT_FALSE(isAsciiLetter("1"));
}

TEST(Text, AControlCharacterIsACharacterOfItsOwn) {
  EXPECT_EQ(firstCharacter("\x7f\u0301"), "\x7f");
  EXPECT_EQ(firstCharacter("a\x7f"), "a");
}

TEST(Text, KnowsControlCharactersAndWhiteSpace) {
  for (const char32_t scalar : {U'\0', U'\t', U'\n', U'\r', U' ', U'\x7f', U'\u0085', U'\u00a0',
                                U'\u2028', U'\u2029', U'\u3000', U'\u200d'}) {
    EXPECT_TRUE(isControlOrSpace(scalar)) << static_cast<unsigned>(scalar);
  }
  EXPECT_FALSE(isControlOrSpace(U'a'));
  EXPECT_FALSE(isControlOrSpace(U'-'));
}

TEST(Text, ControlCharactersAreThoseOfTheirCategory) {
  for (const std::string_view control : {"\n", "\r\n", "\x10", "\x1b", "\x7f", "\u0085"})
    EXPECT_TRUE(isControl(control)) << control;
  // A zero-width joiner is a format character.
  for (const std::string_view other : {"", "a", " ", "\u00a0", "\u200d", "\xff"})
    EXPECT_FALSE(isControl(other)) << other;
}

TEST(Text, LowersLettersOfAllScripts) {
  EXPECT_EQ(lowercased("ПРИВЁТ Hello ÉÑ"), "привёт hello éñ");
  EXPECT_EQ(lowercased("123-_"), "123-_");
  EXPECT_EQ(lowercased(""), "");
}

TEST(Text, TheDottedCapitalIKeepsItsDot) {
  EXPECT_EQ(lowercased("İ"), "i\u0307");
  EXPECT_EQ(lowercased("I"), "i");
}

TEST(Text, ASigmaThatEndsAWordHasAFormOfItsOwn) {
  EXPECT_EQ(lowercased("ΟΔΟΣ"), "οδος");
  EXPECT_EQ(lowercased("ΣΟΦΟΣ ΣΑΣ"), "σοφος σας");
  EXPECT_EQ(lowercased("Σ"), "σ");
  // Marks and quotes do not end a word.
  EXPECT_EQ(lowercased("ΑΣ\u0301"), "ας\u0301");
  EXPECT_EQ(lowercased("ΑΣ'Α"), "ασ'α");
  EXPECT_EQ(lowercased("Α1Σ"), "α1σ");
  for (const std::string mark : {"'", ".", ":", "·", "’", "\u0301", "\u20dd", "\u00ad", "ʰ", "^"})
    EXPECT_EQ(lowercased("Α" + mark + "Σ"), "α" + mark + "ς");
  EXPECT_EQ(lowercased("'Σ"), "'σ");
  EXPECT_EQ(lowercased("αΣ"), "ας");
  EXPECT_EQ(lowercased("ǅΣ"), "ǆς");
  EXPECT_EQ(lowercased("ΑΣα"), "ασα");
}

TEST(Text, LoweringKeepsBytesThatAreNotUtf8) {
  EXPECT_EQ(lowercased("A\xff"
                       "B"),
            "a\xff"
            "b");
}

TEST(Text, LoweringAppendsToWhatIsThere) {
  ScratchText scratch;
  auto out = scratch.string();
  out = "x";
  appendLowercased("ПРИ", out);
  EXPECT_EQ(out, "xпри");
}

TEST(Text, LoweringOnTheStackIsLoweringAllTheSame) {
  for (const std::string text : {"ПРИВЁТ", "ΟΔΟΣ ΣΑΣ", "ΑΣ'Α", "İI", "A\xff", "Ⅷ字🙂", ""}) {
    ScratchText scratch;
    auto out = scratch.string();
    appendLowercased(text, out);
    EXPECT_EQ(std::string_view(out), lowercased(text));
  }
}

TEST(Text, ComposesLettersAndMarks) {
  EXPECT_EQ(composed("и\u0306"), "й");
  EXPECT_EQ(composed("е\u0308"), "ё");
  EXPECT_EQ(composed("e\u0301"), "é");
  EXPECT_EQ(composed("\u1112\u1161\u11ab"), "한");
  EXPECT_EQ(composed("привет"), "привет");
  EXPECT_EQ(composed("\xff\xcc"), "\xff\xcc");
}

TEST(Text, WhatIsSurelyComposedIsNotChangedByComposing) {
  for (const char32_t scalar : {U'a', U'é', U'ё', U'й', U'я', U'\u0301', U'\u0483', U'ї', U'中'}) {
    std::string text = "е";
    appendScalar(scalar, text);
    EXPECT_TRUE(!isSurelyComposed(text) || composed(text) == text) << text;
  }
  EXPECT_TRUE(isSurelyComposed("привет hello"));
  EXPECT_FALSE(isSurelyComposed("и\u0306"));
}

TEST(Text, TrimsWhiteSpaceAndLineBreaksAtBothEnds) {
  EXPECT_EQ(trimmed(" \t\r\nслово \u00a0\u2003\u2028\u0085"), "слово");
  EXPECT_EQ(trimmed("два слова"), "два слова");
  EXPECT_EQ(trimmed(" \n "), "");
  EXPECT_EQ(trimmed(""), "");
}

TEST(Text, TrimmingStopsAtBytesThatAreNotUtf8) {
  EXPECT_EQ(trimmed("x \x80"), "x \x80");
  EXPECT_EQ(trimmed("\x80 x"), "\x80 x");
}

TEST(Text, AWordOfAListIsTrimmedLoweredAndComposed) {
  EXPECT_EQ(normalizedWord("  РАИ\u0306\r"), "рай");
  EXPECT_EQ(normalizedWord(" \t"), "");
}

TEST(Text, ValidatesUtf8) {
  EXPECT_TRUE(isValidUtf8(""));
  EXPECT_TRUE(isValidUtf8("привет 😀"));
  EXPECT_TRUE(isValidUtf8(std::string_view("a\0b", 3)));
  for (const std::string_view bad :
       {"\xff", "\xd0", "a\x80", "\xc0\x80", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\xe2\x82"}) {
    EXPECT_FALSE(isValidUtf8(bad)) << ::testing::PrintToString(bad);
  }
}

TEST(Text, GoesToUtf16AndBack) {
  EXPECT_EQ(utf16("aя😀"), u"aя😀");
  EXPECT_EQ(utf16Length("aя😀"), 4u);
  EXPECT_EQ(utf16("\xff"), u"\uFFFD");
  EXPECT_EQ(utf16Length("\xff"), 1u);
  std::string out = "old";
  assignUtf16(u"aя😀", out);
  EXPECT_EQ(out, "aя😀");
  assignUtf16(u"", out);
  EXPECT_EQ(out, "");
}

TEST(Text, ASurrogateWithoutItsPartnerBecomesTheReplacementCharacter) {
  std::string out;
  const char16_t high = 0xD83D;
  const char16_t low = 0xDE00;
  assignUtf16(std::u16string{high}, out);
  EXPECT_EQ(out, "\uFFFD");
  assignUtf16(std::u16string{low, u'a'}, out);
  EXPECT_EQ(out, "\uFFFDa");
  assignUtf16(std::u16string{high, u'a'}, out);
  EXPECT_EQ(out, "\uFFFDa");
  assignUtf16(std::u16string{high, char16_t{0xE000}}, out);
  EXPECT_EQ(out, "\uFFFD\uE000");
  assignUtf16(std::u16string{high, high, low}, out);
  EXPECT_EQ(out, "\uFFFD😀");
}

/// What utf8proc itself makes of a text.
std::string composedByUtf8proc(const std::string& text) {
  utf8proc_uint8_t* mapped = nullptr;
  const auto length =
      utf8proc_map(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                   static_cast<utf8proc_ssize_t>(text.size()), &mapped,
                   static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE));
  const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner(mapped, &std::free);
  if (length < 0) return text;
  return {reinterpret_cast<const char*>(mapped), static_cast<std::size_t>(length)};
}

TEST(Text, EveryScalarIsComposedAsUtf8procDoesIt) {
  for (char32_t scalar = 0; scalar <= 0x10FFFF; ++scalar) {
    if (scalar >= 0xD800 && scalar <= 0xDFFF) continue;
    std::string text = "e";
    appendScalar(scalar, text);
    text += "\u0323\u0301";
    ASSERT_EQ(composed(text), composedByUtf8proc(text)) << static_cast<unsigned>(scalar);
  }
}

TEST(Text, AnyMixtureIsComposedAsUtf8procDoesIt) {
  // Letters that compose, marks of many classes, jamo, a composed mark, what is excluded from
  // composition, and bytes that are not UTF-8.
  const List pieces = {"a",      "e",      "и",      "е",      "o",      "q",      "\u0301",
                       "\u0323", "\u0308", "\u0306", "\u0327", "\u0345", "\u05B0", "\u05BC",
                       "\u064B", "\u0651", "\u093C", "\u0915", "\u0958", "\u1100", "\u1161",
                       "\u11A8", "\u0344", "\u1E14", "\u3099", "か",     "\u0334", "\u20D2",
                       "\u0F71", "\u0F72", "\u0F74", "\uFB1D", "Å",      "🙂",   " "};
  std::mt19937 random(1);
  for (int i = 0; i < 20'000; ++i) {
    std::string text;
    const auto length = random() % 24;
    for (std::size_t piece = 0; piece < length; ++piece)
      text += pieces[random() % pieces.size()];
    if (random() % 50 == 0) text += "\xff";
    ASSERT_EQ(composed(text), composedByUtf8proc(text)) << ::testing::PrintToString(text);
  }
}

/// Everything that is asked of a text, by name.
std::vector<std::pair<const char*, testing::Growth::Operation>> operations() {
  return {
      {"count", [](std::string_view text) { static_cast<void>(count(text)); }},
      {"lastCharacter", [](std::string_view text) { static_cast<void>(lastCharacter(text)); }},
      {"firstCharacter", [](std::string_view text) { static_cast<void>(firstCharacter(text)); }},
      {"withoutLast",
       [](std::string_view text) { static_cast<void>(withoutLast(text, text.size() / 8)); }},
      {"last", [](std::string_view text) { static_cast<void>(last(text, text.size() / 8)); }},
      {"lowercased", [](std::string_view text) { static_cast<void>(lowercased(text)); }},
      {"composed", [](std::string_view text) { static_cast<void>(composed(text)); }},
      {"trimmed", [](std::string_view text) { static_cast<void>(trimmed(text)); }},
      {"normalizedWord", [](std::string_view text) { static_cast<void>(normalizedWord(text)); }},
      {"isValidUtf8", [](std::string_view text) { static_cast<void>(isValidUtf8(text)); }},
      {"utf16", [](std::string_view text) { static_cast<void>(utf16(text)); }},
      {"utf16Length", [](std::string_view text) { static_cast<void>(utf16Length(text)); }},
  };
}

TEST(Text, NoOperationTakesMoreTimeForAByteOfALongTextThanOfAShortOne) {
  const List patterns = {"a",
                         "я",
                         "\u0301\u0323",
                         "\u0323\u0301",
                         "е\u0308",
                         "👩‍",
                         "🇷🇺",
                         "Σ'",
                         "Σ",
                         "'",
                         " ",
                         "\xff",
                         "\u1100\u1161\u11a8",
                         "\u0915\u094D",
                         "\r\n",
                         "\u0344",
                         "İ",
                         "a\u0301🇷",
                         "\x80"};
  for (const auto& [name, operation] : operations()) {
    for (const auto& pattern : patterns) {
      EXPECT_LE(testing::Growth::of(pattern, operation), testing::Growth::kMost)
          << name << " of " << ::testing::PrintToString(pattern);
    }
  }
}

// What is typed most takes short cuts past the Unicode tables; they lead to the same places.
TEST(Text, ShortCutsAgreeWithTheUnicodeTables) {
  for (utf8proc_int32_t scalar = 0; scalar <= 0x10FFFF; ++scalar) {
    if (scalar >= 0xD800 && scalar <= 0xDFFF) continue;
    utf8proc_uint8_t bytes[4];
    const auto length = static_cast<std::size_t>(utf8proc_encode_char(scalar, bytes));
    const std::string spelled(reinterpret_cast<const char*>(bytes), length);
    std::string appended;
    appendScalar(static_cast<char32_t>(scalar), appended);
    ASSERT_EQ(appended, spelled) << scalar;
    ASSERT_EQ(singleScalar(spelled), static_cast<char32_t>(scalar)) << scalar;
    const auto category = utf8proc_category(scalar);
    ASSERT_EQ(isLetter(spelled),
              category >= UTF8PROC_CATEGORY_LU && category <= UTF8PROC_CATEGORY_LO)
        << scalar;
    ASSERT_EQ(isAsciiLetter(spelled), scalar < 0x80 && isLetter(spelled)) << scalar;
    if (scalar == 0x130) continue;  // becomes two scalars
    const auto lower = lowercased(spelled);
    ASSERT_EQ(singleScalar(lower), static_cast<char32_t>(utf8proc_tolower(scalar))) << scalar;
  }
}

TEST(Text, ShortCutsAgreeOnWhereACharacterEnds) {
  std::vector<utf8proc_int32_t> scalars = {0x301, 0x483, 0x200D, 0x1F600, 0x1F1F7, 0xFE0F};
  for (utf8proc_int32_t scalar = 0; scalar < 0x460; ++scalar)
    scalars.push_back(scalar);
  for (const auto first : scalars) {
    for (const auto second : scalars) {
      std::string pair;
      appendScalar(static_cast<char32_t>(first), pair);
      appendScalar(static_cast<char32_t>(second), pair);
      ASSERT_EQ(count(pair), utf8proc_grapheme_break(first, second) ? 2u : 1u)
          << first << " and " << second;
    }
  }
}

TEST(Text, ShortCutsAgreeOnWhatIsNoUtf8) {
  for (unsigned first = 0; first < 0x100; ++first) {
    for (unsigned second = 0; second < 0x100; ++second) {
      const std::string bytes = {static_cast<char>(first), static_cast<char>(second)};
      utf8proc_int32_t scalar = -1;
      const auto length =
          utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(bytes.data()), 2, &scalar);
      const auto whole = singleScalar(bytes);
      ASSERT_EQ(whole.has_value(), length == 2) << first << " " << second;
      if (whole) {
        ASSERT_EQ(*whole, static_cast<char32_t>(scalar));
      }
    }
  }
}

}  // namespace
}  // namespace tessarok::text

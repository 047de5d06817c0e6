#include <gtest/gtest.h>
#include <ostream>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "desktops/terminal/InputDecoder.h"

namespace tessarok::terminal {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

using Kind = InputItem::Kind;
using Items = std::vector<std::pair<Kind, std::string>>;

/// Takes what can be had; pasted pieces that follow one another are one.
void drain(InputDecoder& decoder, Items& items) {
  while (const auto item = decoder.next()) {
    if (item->kind == Kind::paste && !items.empty() && items.back().first == Kind::paste) {
      items.back().second += item->bytes;
    } else {
      items.emplace_back(item->kind, item->bytes);
    }
  }
}

/// What comes of two pieces and then a silence.
Items decode(std::string_view first, std::string_view second = {}) {
  InputDecoder decoder;
  Items items;
  for (const auto piece : {first, second}) {
    decoder.append(piece);
    drain(decoder, items);
  }
  decoder.endWaiting();
  drain(decoder, items);
  EXPECT_EQ(decoder.size(), 0u);
  return items;
}

std::string bytesOf(const Items& items) {
  std::string bytes;
  for (const auto& item : items)
    bytes += item.second;
  return bytes;
}

struct Case {
  const char* name;
  std::string bytes;
  Items items;
};

void PrintTo(const Case& example, std::ostream* out) {
  *out << example.name;
}

class InputDecoderTest : public ::testing::TestWithParam<Case> {};

TEST_P(InputDecoderTest, CutsTheSameWayWhereverTheBytesAreSplit) {
  const auto& [name, bytes, items] = GetParam();
  EXPECT_EQ(decode(bytes), items);
  for (std::size_t at = 1; at < bytes.size(); ++at) {
    EXPECT_EQ(decode(std::string_view(bytes).substr(0, at), std::string_view(bytes).substr(at)),
              items)
        << "split at " << at;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Bytes, InputDecoderTest,
    ::testing::Values(
        Case{"letters",
             "aп€😀",
             {{Kind::character, "a"},
              {Kind::character, "п"},
              {Kind::character, "€"},
              {Kind::character, "😀"}}},
        Case{"controls",
             "\0\r\t\x7f\x01"s,
             {{Kind::control, std::string(1, '\0')},
              {Kind::control, "\r"},
              {Kind::control, "\t"},
              {Kind::control, "\x7f"},
              {Kind::control, "\x01"}}},
        Case{"escape", "\x1b", {{Kind::control, "\x1b"}}},
        Case{"altSpace",
             "a\x1b b",
             {{Kind::character, "a"}, {Kind::meta, "\x1b "}, {Kind::character, "b"}}},
        Case{"altLetters",
             "\x1b"
             "f\x1bп\x1b\x7f",
             {{Kind::meta,
               "\x1b"
               "f"},
              {Kind::meta, "\x1bп"},
              {Kind::meta, "\x1b\x7f"}}},
        Case{"altBracket", "\x1b[", {{Kind::meta, "\x1b["}}},
        Case{"altClosingBracket", "\x1b]", {{Kind::meta, "\x1b]"}}},
        Case{"altO", "\x1bO", {{Kind::meta, "\x1bO"}}},
        Case{"arrows",
             "\x1b[A\x1bOB\x1b[1;5C",
             {{Kind::sequence, "\x1b[A"},
              {Kind::sequence, "\x1bOB"},
              {Kind::sequence, "\x1b[1;5C"}}},
        Case{"escapeBeforeArrow",
             "\x1b\x1b[A",
             {{Kind::control, "\x1b"}, {Kind::sequence, "\x1b[A"}}},
        Case{"functionKeys",
             "\x1b[15~\x1b[[Ax",
             {{Kind::sequence, "\x1b[15~"}, {Kind::sequence, "\x1b[[A"}, {Kind::character, "x"}}},
        Case{"mouse",
             "\x1b[<0;10;5M\x1b[M abx",
             {{Kind::sequence, "\x1b[<0;10;5M"},
              {Kind::sequence, "\x1b[M ab"},
              {Kind::character, "x"}}},
        Case{"brokenSequence",
             "\x1b[12\rx",
             {{Kind::sequence, "\x1b[12"}, {Kind::control, "\r"}, {Kind::character, "x"}}},
        Case{"cutSequence", "\x1b[1;", {{Kind::sequence, "\x1b[1;"}}},
        Case{"invalid",
             "a\xff\xd0z\xc0\xaf",
             {{Kind::character, "a"},
              {Kind::unknown, "\xff"},
              {Kind::unknown, "\xd0"},
              {Kind::character, "z"},
              {Kind::unknown, "\xc0"},
              {Kind::unknown, "\xaf"}}},
        Case{"surrogate",
             "\xed\xa0\x80",
             {{Kind::unknown, "\xed"}, {Kind::unknown, "\xa0"}, {Kind::unknown, "\x80"}}},
        Case{"cutLetter", "\xe2\x82", {{Kind::unknown, "\xe2\x82"}}},
        Case{"escapeBeforeInvalid",
             "\x1b\xff",
             {{Kind::control, "\x1b"}, {Kind::unknown, "\xff"}}}));

TEST(InputDecoder, PastesEveryByteBetweenTheBrackets) {
  const auto text = "b\x1b[A\r\0\xff п\x1b[20"s;
  const auto bytes = "a\x1b[200~" + text + "\x1b[201~c";
  const Items expected = {{Kind::character, "a"},
                          {Kind::pasteBracket, "\x1b[200~"},
                          {Kind::paste, text},
                          {Kind::pasteBracket, "\x1b[201~"},
                          {Kind::character, "c"}};
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    EXPECT_EQ(decode(bytes.substr(0, at), bytes.substr(at)), expected) << "split at " << at;
  }
}

TEST(InputDecoder, ASilenceWithinTheClosingBracketDoesNotHideIt) {
  InputDecoder decoder;
  Items items;
  decoder.append("\x1b[200~word\x1b[20");
  drain(decoder, items);
  decoder.endWaiting();
  drain(decoder, items);
  decoder.append("1~x");
  drain(decoder, items);
  const Items expected = {{Kind::pasteBracket, "\x1b[200~"},
                          {Kind::paste, "word"},
                          {Kind::pasteBracket, "\x1b[201~"},
                          {Kind::character, "x"}};
  EXPECT_EQ(items, expected);
}

TEST(InputDecoder, TakesAnswersOfTheTerminalForNoKeys) {
  const std::string colour = "\x1b]11;rgb:ffff/ffff/ffff\x1b\\";
  const std::string version = "\x1bP>|term(1)\a";
  for (const auto& answer : {colour, version}) {
    for (std::size_t at = 0; at < answer.size(); ++at) {
      const auto items = decode(answer.substr(0, at), answer.substr(at) + "x");
      EXPECT_EQ(bytesOf(items), answer + "x");
      ASSERT_GE(items.size(), 2u);
      EXPECT_EQ(items.back(), std::pair(Kind::character, std::string("x"))) << "split at " << at;
      for (std::size_t i = 0; i + 1 < items.size(); ++i)
        EXPECT_EQ(items[i].first, Kind::answer);
    }
  }
}

TEST(InputDecoder, AKeyOrASilenceEndsAnAnswerThatIsNone) {
  EXPECT_EQ(decode("\x1b]ls\r").back(), std::pair(Kind::control, std::string("\r")));

  InputDecoder decoder;
  Items items;
  decoder.append("\x1b]l");
  drain(decoder, items);
  EXPECT_TRUE(decoder.isWaiting());
  decoder.endWaiting();
  decoder.append("s");
  drain(decoder, items);
  EXPECT_EQ(items.back(), std::pair(Kind::character, std::string("s")));
}

TEST(InputDecoder, WaitsOnlyWhileMoreMayCome) {
  InputDecoder decoder;
  decoder.append("\x1b");
  EXPECT_FALSE(decoder.next());
  EXPECT_TRUE(decoder.isWaiting());
  decoder.append("[A");
  const auto arrow = decoder.next();
  ASSERT_TRUE(arrow);
  EXPECT_EQ(arrow->bytes, "\x1b[A");
  EXPECT_FALSE(decoder.next());
  EXPECT_FALSE(decoder.isWaiting());
}

TEST(InputDecoder, ABurstIsAPasteWithoutBrackets) {
  InputDecoder decoder;
  Items items;
  const auto bytes = "ghbdtn \x1b \0\x1b[A\xff"s;
  decoder.setBurst(true);
  decoder.append(bytes);
  drain(decoder, items);
  EXPECT_EQ(items, (Items{{Kind::paste, bytes}}));
  decoder.setBurst(false);
  decoder.append("a");
  drain(decoder, items);
  EXPECT_EQ(items.back(), std::pair(Kind::character, std::string("a")));
}

TEST(InputDecoder, FindsTheBracketsInABurst) {
  InputDecoder decoder;
  Items items;
  decoder.setBurst(true);
  decoder.append("\x1b[200~text\x1b[201~");
  drain(decoder, items);
  decoder.setBurst(false);
  decoder.append("a");
  drain(decoder, items);
  const Items expected = {{Kind::pasteBracket, "\x1b[200~"},
                          {Kind::paste, "text"},
                          {Kind::pasteBracket, "\x1b[201~"},
                          {Kind::character, "a"}};
  EXPECT_EQ(items, expected);
}

TEST(InputDecoder, LosesNoByteOfNoise) {
  std::mt19937 random(1);
  // Mostly what sequences are made of.
  const auto likely = "\x1b[]OPM~;?<0129ab \x7f\r\a\\\xd0\xbf\xff"sv;
  for (int run = 0; run < 500; ++run) {
    InputDecoder decoder;
    std::string sent;
    std::string received;
    for (int piece = 0; piece < 20; ++piece) {
      std::string bytes;
      for (auto left = random() % 12; left > 0; --left)
        bytes += likely[random() % likely.size()];
      sent += bytes;
      decoder.append(bytes);
      while (const auto item = decoder.next())
        received += item->bytes;
      if (random() % 4 != 0) continue;
      decoder.endWaiting();
      while (const auto item = decoder.next())
        received += item->bytes;
    }
    // The beginning of a closing bracket is held back until more comes.
    decoder.append("x");
    sent += "x";
    decoder.endWaiting();
    while (const auto item = decoder.next())
      received += item->bytes;
    ASSERT_EQ(received, sent);
  }
}

}  // namespace
}  // namespace tessarok::terminal

#include <gtest/gtest.h>
#include <map>
#include <string>

#include "desktops/terminal/HotKeys.h"

namespace tessarok::terminal {
namespace {

using Key = HotKeys::Key;
using Kind = InputItem::Kind;
using Phase = HotKeys::Phase;

class HotKeysTest : public ::testing::Test {
 protected:
  [[nodiscard]] HotKeys::Press of(Kind kind, std::string_view bytes, char32_t scalar = 0) const {
    return hotKeys_.of({kind, bytes, scalar});
  }
  [[nodiscard]] Key keyOf(std::string_view sequence) const {
    return of(Kind::sequence, sequence).key;
  }
  [[nodiscard]] Phase phaseOf(std::string_view sequence) const {
    return of(Kind::sequence, sequence).phase;
  }

  std::map<std::string, std::string, std::less<>> settings_;
  HotKeys hotKeys_{[this](std::string_view key) {
    const auto found = settings_.find(key);
    return found == settings_.end() ? std::nullopt : std::optional(found->second);
  }};
};

TEST_F(HotKeysTest, ComeAsPlainBytes) {
  EXPECT_EQ(of(Kind::control, std::string_view("\0", 1)).key, Key::layout);
  EXPECT_EQ(of(Kind::meta, "\x1b ", U' ').key, Key::manual);
  EXPECT_EQ(of(Kind::meta, "\x1bx", U'x').key, Key::none);
  EXPECT_EQ(of(Kind::control, "\x01", 1).key, Key::none);
}

TEST_F(HotKeysTest, ComeInTheWordsOfTheKittyProtocol) {
  EXPECT_EQ(keyOf("\x1b[32;5u"), Key::layout);
  EXPECT_EQ(keyOf("\x1b[32;3u"), Key::manual);
  // With Num Lock.
  EXPECT_EQ(keyOf("\x1b[32;133u"), Key::layout);
  EXPECT_EQ(keyOf("\x1b[32;7u"), Key::none);
  EXPECT_EQ(keyOf("\x1b[32u"), Key::none);
  EXPECT_EQ(keyOf("\x1b[97;5u"), Key::none);
  EXPECT_EQ(phaseOf("\x1b[32;5u"), Phase::press);
  EXPECT_EQ(phaseOf("\x1b[32;5:1u"), Phase::press);
  EXPECT_EQ(phaseOf("\x1b[32;5:2u"), Phase::repeat);
  EXPECT_EQ(phaseOf("\x1b[32:32;5:3;32u"), Phase::release);
}

TEST_F(HotKeysTest, ComeAsModifyOtherKeysHasThem) {
  EXPECT_EQ(keyOf("\x1b[27;5;32~"), Key::layout);
  EXPECT_EQ(keyOf("\x1b[27;3;32~"), Key::manual);
  EXPECT_EQ(keyOf("\x1b[27;5;9~"), Key::none);
  EXPECT_EQ(keyOf("\x1b[3;5~"), Key::none);
}

TEST_F(HotKeysTest, AreLeftToTheProgramsWhereThePersonSaysSo) {
  settings_["manualKey"] = "pause";
  settings_["layoutKey"] = "none";
  EXPECT_EQ(keyOf("\x1b[32;3u"), Key::none);
  EXPECT_EQ(of(Kind::meta, "\x1b ", U' ').key, Key::none);
  EXPECT_EQ(keyOf("\x1b[32;5u"), Key::none);
  EXPECT_TRUE(hotKeys_.pausesWithGrave());
  for (const auto* choice : {"none", "section"}) {
    settings_["pauseKey"] = choice;
    EXPECT_FALSE(hotKeys_.pausesWithGrave()) << choice;
  }
  for (const auto* choice : {"grave", "english-only"}) {
    settings_["pauseKey"] = choice;
    EXPECT_TRUE(hotKeys_.pausesWithGrave()) << choice;
  }
}

}  // namespace
}  // namespace tessarok::terminal

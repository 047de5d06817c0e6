#include <gtest/gtest.h>
#include <set>

#include "desktops/xkb/HardwareKeys.h"

namespace tessarok::xkb::hardwareKeys {
namespace {

TEST(HardwareKeys, KnowsTheKeysThatTheCorrectorNames) {
  EXPECT_EQ(codeOf(65), keyCodes::space);
  EXPECT_EQ(codeOf(36), keyCodes::returnKey);
  EXPECT_EQ(codeOf(104), keyCodes::enter);
  EXPECT_EQ(codeOf(23), keyCodes::tab);
  EXPECT_EQ(codeOf(22), keyCodes::backspace);
  EXPECT_EQ(codeOf(49), keyCodes::grave);
  EXPECT_EQ(codeOf(94), keyCodes::isoSection);
  EXPECT_EQ(codeOf(119), keyCodes::forwardDelete);
  EXPECT_EQ(codeOf(113), keyCodes::left);
  EXPECT_EQ(codeOf(9), keyCodes::escape);
  EXPECT_EQ(codeOf(38), 0);
}

TEST(HardwareKeys, OtherKeysHaveNoCode) {
  EXPECT_EQ(codeOf(kPause), kNoKey);
  EXPECT_EQ(codeOf(50), kNoKey);
  EXPECT_EQ(codeOf(0), kNoKey);
  EXPECT_EQ(codeOf(255), kNoKey);
  EXPECT_EQ(xKeyOf(kNoKey), 0);
  EXPECT_EQ(xKeyOf(-1), 0);
}

TEST(HardwareKeys, GoesBothWays) {
  std::set<KeyCode> seen;
  for (unsigned key = 0; key < 256; ++key) {
    const auto code = codeOf(static_cast<std::uint8_t>(key));
    if (code == kNoKey) continue;
    EXPECT_EQ(xKeyOf(code), key);
    EXPECT_TRUE(seen.insert(code).second) << code;
  }
  EXPECT_GT(seen.size(), 70u);
}

}  // namespace
}  // namespace tessarok::xkb::hardwareKeys

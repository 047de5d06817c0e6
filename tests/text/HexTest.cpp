#include <gtest/gtest.h>
#include <string>

#include "text/Hex.h"

namespace tessarok::text {
namespace {

TEST(Hex, BytesComeBack) {
  const std::string bytes("a\0\xff\r", 4);
  EXPECT_EQ(hexOf(bytes), "6100ff0d");
  EXPECT_EQ(bytesOfHex("6100ff0d"), bytes);
  EXPECT_EQ(hexOf(""), "");
  EXPECT_EQ(bytesOfHex(""), "");
}

TEST(Hex, AnythingElseIsNone) {
  EXPECT_EQ(bytesOfHex("6"), std::nullopt);
  EXPECT_EQ(bytesOfHex("6g"), std::nullopt);
  EXPECT_EQ(bytesOfHex("6A"), std::nullopt);
}

}  // namespace
}  // namespace tessarok::text

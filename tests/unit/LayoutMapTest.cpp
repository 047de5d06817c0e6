#include "LayoutMap.h"

#include <gtest/gtest.h>

namespace tessarok {
namespace {

TEST(LayoutMap, ConvertsAWordTypedOnTheOtherLayout) {
  EXPECT_EQ(LayoutMap::convert("ghbdtn", false), "привет");
  EXPECT_EQ(LayoutMap::convert("руддщ", true), "hello");
}

}  // namespace
}  // namespace tessarok

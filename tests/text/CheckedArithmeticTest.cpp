#include <cstddef>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>

#include "text/CheckedArithmetic.h"

namespace tessarok {
namespace {

TEST(CheckedArithmetic, Adds) {
  EXPECT_EQ(checkedAdd<std::int64_t>(2, 3), 5);
  EXPECT_EQ(checkedAdd<std::int64_t>(std::numeric_limits<std::int64_t>::max() - 1, 1),
            std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(checkedAdd<std::size_t>(0, std::numeric_limits<std::size_t>::max()),
            std::numeric_limits<std::size_t>::max());
}

TEST(CheckedArithmeticDeathTest, AnOverflowStopsTheProgram) {
  EXPECT_DEATH(
      static_cast<void>(checkedAdd<std::int64_t>(std::numeric_limits<std::int64_t>::max(), 1)), "");
  EXPECT_DEATH(
      static_cast<void>(checkedAdd<std::int64_t>(std::numeric_limits<std::int64_t>::min(), -1)),
      "");
  EXPECT_DEATH(
      static_cast<void>(checkedAdd<std::size_t>(std::numeric_limits<std::size_t>::max(), 1)), "");
}

}  // namespace
}  // namespace tessarok

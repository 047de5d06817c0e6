#include <gtest/gtest.h>

#include "desktops/inputmethod/KeyLag.h"

namespace tessarok::inputmethod {
namespace {

TEST(KeyLag, IsThatOfTheLatestKeyBehindTheSoonest) {
  KeyLag lag;
  EXPECT_EQ(lag.latest(), 0);
  // Whatever the clocks show.
  lag.keyCame(5000, 100.002);
  EXPECT_EQ(lag.latest(), 0);
  lag.keyCame(5100, 100.1);
  EXPECT_NEAR(lag.latest(), 0, 1e-9);
  lag.keyCame(5200, 100.25);
  EXPECT_NEAR(lag.latest(), 0.05, 1e-9);
}

TEST(KeyLag, IsForgottenLittleByLittle) {
  KeyLag lag;
  lag.keyCame(1000, 1);
  lag.keyCame(1100, 1.3);
  for (int key = 2; key < 100; ++key) {
    const double before = lag.latest();
    lag.keyCame(1000 + 100 * key, 1 + 0.1 * key);
    EXPECT_LT(lag.latest(), before);
  }
  EXPECT_LT(lag.latest(), 0.01);
}

TEST(KeyLag, SaysNothingOfKeysWithoutATimeAndOfOtherClocks) {
  KeyLag lag;
  lag.keyCame(1000, 1);
  lag.keyCame(0, 50);
  EXPECT_EQ(lag.latest(), 0);
  // After 49 days the milliseconds begin anew.
  lag.keyCame(static_cast<int>(0xFFFFFFF0U), 4294967.28);
  lag.keyCame(100, 4294967.396);
  EXPECT_NEAR(lag.latest(), 0, 1e-6);
  lag.keyCame(200, 4294967.546);
  EXPECT_NEAR(lag.latest(), 0.05, 1e-6);
}

}  // namespace
}  // namespace tessarok::inputmethod

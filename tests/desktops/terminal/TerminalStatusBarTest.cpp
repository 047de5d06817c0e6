#include <gtest/gtest.h>

#include "desktops/terminal/TerminalStatusBar.h"

namespace tessarok::terminal {
namespace {

TEST(TerminalStatusBar, WithoutAnItemItWorks) {
  EXPECT_TRUE(TerminalStatusBar().works());
}

TEST(TerminalStatusBar, ADimmedIconSaysThatNothingIsCorrected) {
  TerminalStatusBar bar;
  const auto item = bar.createItem();
  item->setAppearsDisabled(true);
  EXPECT_FALSE(bar.works());
  item->setAppearsDisabled(false);
  EXPECT_TRUE(bar.works());
}

}  // namespace
}  // namespace tessarok::terminal

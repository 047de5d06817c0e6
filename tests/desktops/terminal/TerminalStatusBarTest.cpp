#include <gtest/gtest.h>

#include "desktops/terminal/TerminalStatusBar.h"
#include "platform/Menu.h"

namespace tessarok::terminal {
namespace {

/// A menu that begins with a switch, as the program's does.
std::shared_ptr<platform::Menu> menuWithSwitch(int& presses) {
  auto item = std::make_shared<platform::MenuItem>();
  item->state = true;
  item->action = [&presses](platform::MenuItem& pressed) {
    ++presses;
    pressed.state = !pressed.state;
  };
  auto menu = std::make_shared<platform::Menu>();
  menu->items.push_back(std::move(item));
  return menu;
}

TEST(TerminalStatusBar, WithoutAnItemItWorksAndCannotBeSwitched) {
  TerminalStatusBar bar;
  EXPECT_TRUE(bar.works());
  EXPECT_FALSE(bar.isEnabled());
  bar.setEnabled(true);
  EXPECT_FALSE(bar.isEnabled());
}

TEST(TerminalStatusBar, ADimmedIconSaysThatNothingIsCorrected) {
  TerminalStatusBar bar;
  const auto item = bar.createItem();
  item->setAppearsDisabled(true);
  EXPECT_FALSE(bar.works());
  item->setAppearsDisabled(false);
  EXPECT_TRUE(bar.works());
}

TEST(TerminalStatusBar, TheMenusSwitchIsPressedOnlyForAChange) {
  TerminalStatusBar bar;
  const auto item = bar.createItem();
  item->setMenu(std::make_shared<platform::Menu>());
  EXPECT_FALSE(bar.isEnabled());
  int presses = 0;
  item->setMenu(menuWithSwitch(presses));
  EXPECT_TRUE(bar.isEnabled());
  bar.setEnabled(true);
  EXPECT_EQ(presses, 0);
  bar.setEnabled(false);
  EXPECT_FALSE(bar.isEnabled());
  bar.setEnabled(false);
  EXPECT_EQ(presses, 1);
  bar.setEnabled(true);
  EXPECT_TRUE(bar.isEnabled());
}

}  // namespace
}  // namespace tessarok::terminal

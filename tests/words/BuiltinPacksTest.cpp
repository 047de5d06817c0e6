#include <gtest/gtest.h>

#include "tests/support/FakeDesktop.h"
#include "words/BuiltinPacks.h"

namespace tessarok {
namespace {

using testing::FakeDesktop;

TEST(BuiltinPacks, AreThreeInTheOrderOfTheMenu) {
  const auto& packs = BuiltinPacks::all();
  ASSERT_EQ(packs.size(), 3u);
  EXPECT_EQ(packs[0].id, "it");
  EXPECT_EQ(packs[0].title, "IT / разработка");
  EXPECT_EQ(packs[0].resource, "pack_it");
  EXPECT_EQ(packs[1].id, "chat");
  EXPECT_EQ(packs[1].title, "Интернет-сленг");
  EXPECT_EQ(packs[1].resource, "pack_chat");
  EXPECT_EQ(packs[2].id, "gaming");
  EXPECT_EQ(packs[2].title, "Геймерский");
  EXPECT_EQ(packs[2].resource, "pack_gaming");
}

TEST(BuiltinPacks, GamesAreOffUntilSwitchedOn) {
  FakeDesktop desktop;
  const auto& packs = BuiltinPacks::all();
  EXPECT_TRUE(BuiltinPacks::isEnabled(packs[0]));
  EXPECT_TRUE(BuiltinPacks::isEnabled(packs[1]));
  EXPECT_FALSE(BuiltinPacks::isEnabled(packs[2]));
}

TEST(BuiltinPacks, ASavedSwitchTakesTheDefaultsPlace) {
  FakeDesktop desktop;
  const auto& packs = BuiltinPacks::all();
  EXPECT_EQ(BuiltinPacks::defaultsKey(packs[2]), "pack.gaming");
  desktop.userDefaults().setBoolean("pack.gaming", true);
  desktop.userDefaults().setBoolean("pack.it", false);
  EXPECT_TRUE(BuiltinPacks::isEnabled(packs[2]));
  EXPECT_FALSE(BuiltinPacks::isEnabled(packs[0]));
  desktop.userDefaults().setBoolean("pack.gaming", false);
  EXPECT_FALSE(BuiltinPacks::isEnabled(packs[2]));
}

TEST(BuiltinPacks, WordsAreTheUnionOfTheEnabledPacks) {
  FakeDesktop desktop;
  desktop.addResource("pack_it", "git\nобщее\n");
  desktop.addResource("pack_chat", "лол\nобщее\n");
  desktop.addResource("pack_gaming", "нуб\n");
  EXPECT_TRUE(BuiltinPacks::words().empty());
  BuiltinPacks::rebuild();
  EXPECT_EQ(BuiltinPacks::words(), (WordSet{"git", "лол", "общее"}));
  desktop.userDefaults().setBoolean("pack.it", false);
  BuiltinPacks::rebuild();
  EXPECT_EQ(BuiltinPacks::words(), (WordSet{"лол", "общее"}));
  desktop.userDefaults().setBoolean("pack.chat", false);
  desktop.userDefaults().setBoolean("pack.gaming", true);
  BuiltinPacks::rebuild();
  EXPECT_EQ(BuiltinPacks::words(), WordSet{"нуб"});
}

TEST(BuiltinPacks, LinesAreTrimmedAndLoweredAndCommentsAreNoWords) {
  FakeDesktop desktop;
  desktop.addResource("pack_it", "# GIT\r\n  Git \r\n\r\nJSON\r\n  # tail\n");
  BuiltinPacks::rebuild();
  EXPECT_EQ(BuiltinPacks::words(), (WordSet{"git", "json"}));
}

TEST(BuiltinPacks, AMissingPackIsTriedAgainAndAReadOneIsKept) {
  FakeDesktop desktop;
  desktop.addResource("pack_chat", "лол\n");
  BuiltinPacks::rebuild();
  EXPECT_EQ(BuiltinPacks::words(), WordSet{"лол"});
  desktop.addResource("pack_it", "git\n");
  desktop.addResource("pack_chat", "кек\n");
  BuiltinPacks::rebuild();
  EXPECT_EQ(BuiltinPacks::words(), (WordSet{"git", "лол"}));
  EXPECT_EQ(desktop.files().reads["pack_chat.txt"], 1);
  EXPECT_TRUE(desktop.systemLog().take().empty());
}

TEST(BuiltinPacks, AnUnreadablePackAddsNothing) {
  FakeDesktop desktop;
  desktop.addResource("pack_it", "git\n\xff\n");
  desktop.bundle().resources["pack_chat.txt"] = desktop.home();
  desktop.addResource("pack_gaming", "нуб\n");
  desktop.userDefaults().setBoolean("pack.gaming", true);
  BuiltinPacks::rebuild();
  EXPECT_EQ(BuiltinPacks::words(), WordSet{"нуб"});
  desktop.addResource("pack_it", "git\n");
  BuiltinPacks::rebuild();
  EXPECT_EQ(BuiltinPacks::words(), (WordSet{"git", "нуб"}));
}

}  // namespace
}  // namespace tessarok

#include <gtest/gtest.h>

#include "desktops/xkb/LayoutNames.h"

namespace tessarok::xkb::layoutNames {
namespace {

using namespace std::string_view_literals;

TEST(LayoutNames, ReadsTheRules) {
  const auto layouts = fromRules("evdev\0pc105\0us,ru,de\0,winkeys\0grp:alt_shift_toggle\0"sv);
  ASSERT_EQ(layouts.size(), 3u);
  EXPECT_EQ(layouts[0].name, "us");
  EXPECT_EQ(layouts[0].variant, "");
  EXPECT_EQ(layouts[1].variant, "winkeys");
  EXPECT_EQ(layouts[2].name, "de");
  EXPECT_EQ(layouts[2].variant, "");
}

TEST(LayoutNames, OtherBytesAreNoRules) {
  EXPECT_TRUE(fromRules("").empty());
  EXPECT_TRUE(fromRules("evdev\0pc105"sv).empty());
  EXPECT_TRUE(fromRules("evdev\0pc105\0\0\0\0"sv).empty());
}

TEST(LayoutNames, KnowsTheEnglishAndRussianLayouts) {
  EXPECT_EQ(identifierOf({"us", ""}), "com.apple.keylayout.US");
  EXPECT_EQ(identifierOf({"us", "intl"}), "com.apple.keylayout.USInternational-PC");
  EXPECT_EQ(identifierOf({"us", "altgr-intl"}), "com.apple.keylayout.ABC");
  EXPECT_EQ(identifierOf({"gb", ""}), "com.apple.keylayout.British");
  EXPECT_EQ(identifierOf({"ru", ""}), "com.apple.keylayout.RussianWin");
  EXPECT_EQ(identifierOf({"ru", "winkeys"}), "com.apple.keylayout.RussianWin");
  EXPECT_EQ(identifierOf({"ru", "mac"}), "com.apple.keylayout.Russian");
}

TEST(LayoutNames, LeavesOtherLettersAlone) {
  EXPECT_EQ(identifierOf({"de", ""}), "xkb.de");
  EXPECT_EQ(identifierOf({"us", "dvorak"}), "xkb.us(dvorak)");
  EXPECT_EQ(identifierOf({"ru", "phonetic"}), "xkb.ru(phonetic)");
}

TEST(LayoutNames, NamesALayoutAsAPersonWritesIt) {
  EXPECT_EQ(nameOf({"us", ""}), "us");
  EXPECT_EQ(nameOf({"us", "altgr-intl"}), "us(altgr-intl)");
}

TEST(LayoutNames, KnowsLayoutsByTheNamesInTheKeymap) {
  EXPECT_EQ(identifierOfName("English (US)"), "com.apple.keylayout.US");
  EXPECT_EQ(identifierOfName("Russian"), "com.apple.keylayout.RussianWin");
  EXPECT_EQ(identifierOfName("German"), "xkb.German");
}

}  // namespace
}  // namespace tessarok::xkb::layoutNames

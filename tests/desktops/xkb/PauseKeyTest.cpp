#include <gtest/gtest.h>

#include "desktops/xkb/PauseKey.h"

namespace tessarok::xkb {
namespace {

using keyCodes::grave;
using keyCodes::isoSection;

bool pausesIn(const char* choice, KeyCode code, std::optional<Language> layout) {
  return PauseKey::named(choice).value().pauses(code, layout);
}

TEST(PauseKey, HasFourNames) {
  EXPECT_EQ(PauseKey::named("grave")->choice(), PauseKey::Choice::grave);
  EXPECT_EQ(PauseKey::named("english-only")->choice(), PauseKey::Choice::englishOnly);
  EXPECT_EQ(PauseKey::named("section")->choice(), PauseKey::Choice::section);
  EXPECT_EQ(PauseKey::named("none")->choice(), PauseKey::Choice::none);
  EXPECT_FALSE(PauseKey::named("Grave"));
  EXPECT_FALSE(PauseKey::named(""));
  EXPECT_EQ(PauseKey().choice(), PauseKey::Choice::englishOnly);
}

TEST(PauseKey, IsALetterWhileTheEnglishLayoutIsNotOn) {
  EXPECT_TRUE(pausesIn("english-only", grave, Language::english));
  EXPECT_TRUE(pausesIn("english-only", isoSection, Language::english));
  EXPECT_FALSE(pausesIn("english-only", grave, Language::russian));
  EXPECT_FALSE(pausesIn("english-only", isoSection, Language::russian));
  EXPECT_FALSE(pausesIn("english-only", grave, std::nullopt));
}

TEST(PauseKey, MayBeTheSameInEveryLayout) {
  for (const std::optional<Language> layout :
       {std::optional(Language::english), std::optional(Language::russian),
        std::optional<Language>()}) {
    EXPECT_TRUE(pausesIn("grave", grave, layout));
    EXPECT_TRUE(pausesIn("grave", isoSection, layout));
    EXPECT_FALSE(pausesIn("section", grave, layout));
    EXPECT_TRUE(pausesIn("section", isoSection, layout));
    EXPECT_FALSE(pausesIn("none", grave, layout));
    EXPECT_FALSE(pausesIn("none", isoSection, layout));
  }
}

TEST(PauseKey, IsNoOtherKey) {
  for (const auto* choice : {"grave", "english-only", "section", "none"}) {
    EXPECT_FALSE(pausesIn(choice, keyCodes::space, Language::english)) << choice;
  }
}

}  // namespace
}  // namespace tessarok::xkb

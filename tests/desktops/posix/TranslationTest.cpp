#include <gtest/gtest.h>

#include "desktops/posix/Translation.h"
#include "desktops/posix/TranslationValues.h"

namespace tessarok::posix {
namespace {

using Taken = std::pair<std::string, std::string>;

TEST(Translation, ValuesStandInTheirPlaces) {
  EXPECT_EQ(withValues("{1} of {2}", {"a", "b"}), "a of b");
  EXPECT_EQ(withValues("{2} of {1}, {2}", {"a", "b"}), "b of a, b");
  EXPECT_EQ(withValues("", {"a"}), "");
  EXPECT_EQ(withValues("nothing", {}), "nothing");
}

TEST(Translation, AValueIsNotLookedInto) {
  EXPECT_EQ(withValues("{1} {2}", {"{2}", "{1}"}), "{2} {1}");
}

TEST(Translation, APlaceWithoutAValueStays) {
  EXPECT_EQ(withValues("{2} {0} {9} {x} { {1", {"a"}), "{2} {0} {9} {x} { {1");
  EXPECT_EQ(withValues("{1}}", {"a"}), "a}");
}

TEST(Translation, TakesTheValueOutOfASentence) {
  EXPECT_EQ(messageOf("it holds the keyboard \"a \"b\" c\""),
            (Taken{"it holds the keyboard \"{1}\"", "a \"b\" c"}));
  EXPECT_EQ(messageOf("there is none among us, de"), (Taken{"there is none among {1}", "us, de"}));
  EXPECT_EQ(messageOf("plain"), (Taken{"plain", ""}));
  EXPECT_EQ(messageOf("one \" alone"), (Taken{"one \" alone", ""}));
  EXPECT_EQ(messageOf(""), (Taken{"", ""}));
}

/// No language was chosen in this process.
TEST(Translation, WithoutALanguageMessagesAreEnglish) {
  EXPECT_EQ(translated("there is no X11 display"), "there is no X11 display");
  EXPECT_EQ(translated("cannot read {1}", {"x"}), "cannot read x");
  EXPECT_EQ(translatedSentence("cannot open the display \":7\""), "cannot open the display \":7\"");
  EXPECT_EQ(translated(""), "");
}

}  // namespace
}  // namespace tessarok::posix

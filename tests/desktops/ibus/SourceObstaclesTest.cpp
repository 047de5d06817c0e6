// What a person is told of GNOME's list of input sources.

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "desktops/ibus/SourceObstacles.h"
#include "desktops/posix/Translation.h"

namespace tessarok::testing {
namespace {

using Sources = std::vector<ibus::SourceList::Source>;

const ibus::SourceList::Source kEnglish{"ibus", "tessarok:us"};
const ibus::SourceList::Source kRussian{"ibus", "tessarok:ru"};

/// The sentences as a person reads them, up to the colon.
std::vector<std::string> told(const Sources& sources) {
  std::vector<std::string> all;
  for (const auto& obstacle : ibus::obstaclesIn(sources)) {
    const auto sentence = posix::translatedSentence(obstacle);
    all.push_back(sentence.substr(0, sentence.find(':')));
  }
  return all;
}

using Sentences = std::vector<std::string>;

TEST(SourceObstacles, ThereAreNoneWithBothOfOurs) {
  EXPECT_EQ(told({kEnglish, kRussian}), Sentences());
}

TEST(SourceObstacles, LayoutsOfOtherLanguagesDoNotMatter) {
  EXPECT_EQ(told({{"xkb", "de"}, kRussian, {"ibus", "libpinyin"}, kEnglish, {"xkb", "us+dvorak"}}),
            Sentences());
}

TEST(SourceObstacles, OneOfOursIsMissing) {
  EXPECT_EQ(told({kEnglish}), Sentences{"Russian (Tessarok) is missing in GNOME's input sources"});
  EXPECT_EQ(told({kRussian}), Sentences{"English (Tessarok) is missing in GNOME's input sources"});
}

TEST(SourceObstacles, GnomesOwnLayoutsAreThereBesides) {
  EXPECT_EQ(
      told({kEnglish, kRussian, {"xkb", "us+intl"}, {"xkb", "ru"}}),
      Sentences{"nothing is put right while a layout of GNOME's own is on, here \"us+intl, ru\""});
}

TEST(SourceObstacles, NoneOfOursIsThere) {
  EXPECT_EQ(told({{"xkb", "us"}}),
            (Sentences{"English (Tessarok) and Russian (Tessarok) are missing in GNOME's "
                       "input sources",
                       "nothing is put right while a layout of GNOME's own is on, here \"us\""}));
}

}  // namespace
}  // namespace tessarok::testing

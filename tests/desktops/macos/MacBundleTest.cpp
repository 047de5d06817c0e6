#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>

#include "desktops/macos/MacBundle.h"
#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/desktops/macos/Mac.h"
#include "words/ResourceLocator.h"

namespace tessarok::macos {
namespace {

using fakemac::fakeSystem;
using virtualdesktop::TemporaryDirectory;

TEST(MacBundle, TellsItsIdentifier) {
  EXPECT_EQ(MacBundle().identifier(), "app.tessarok");
  fakeSystem().bundleIdentifier.reset();
  EXPECT_EQ(MacBundle().identifier(), std::nullopt);
}

TEST(MacBundle, AnApplicationIsKnownByItsExtension) {
  EXPECT_TRUE(MacBundle().isApplication());
  fakeSystem().bundlePath = "/Volumes/Disk/TESSAROK.APP";
  EXPECT_TRUE(MacBundle().isApplication());
  fakeSystem().bundlePath = "/usr/local/bin";
  EXPECT_FALSE(MacBundle().isApplication());
  fakeSystem().bundlePath = "/Tessarok.bundle";
  EXPECT_FALSE(MacBundle().isApplication());
}

TEST(MacBundle, WithoutABundleThereIsNothing) {
  fakeSystem().hasBundle = false;
  EXPECT_EQ(MacBundle().identifier(), std::nullopt);
  EXPECT_EQ(MacBundle().resource("dict_en", "txt"), std::nullopt);
  EXPECT_FALSE(MacBundle().isApplication());
}

TEST(MacBundle, FindsResources) {
  fakeSystem().resourceDirectory = TESSAROK_TEST_DATA;
  EXPECT_EQ(MacBundle().resource("dict_en", "txt"),
            std::filesystem::path(TESSAROK_TEST_DATA) / "dict_en.txt");
  EXPECT_EQ(MacBundle().resource("missing", "txt"), std::nullopt);
  fakeSystem().pathsHaveNoRepresentation = true;
  EXPECT_EQ(MacBundle().resource("dict_en", "txt"), std::nullopt);
  EXPECT_EQ(fakemac::liveObjects(), 0U);
}

/// A bundle without the file, and a directory of the environment's that has it.
class LookupTest : public testing::Test {
 protected:
  void SetUp() override {
    std::ofstream(named_.path() / "dict_en.txt") << "word\n";
    ::setenv("TESSAROK_RES", named_.path().c_str(), 1);
  }

  TemporaryDirectory home_;
  TemporaryDirectory empty_;
  TemporaryDirectory named_;
  macostest::Mac mac_{home_.path(), empty_.path()};
};

TEST_F(LookupTest, AnApplicationTakesDataFromItsBundleAlone) {
  EXPECT_EQ(ResourceLocator::find("dict_en"), std::nullopt);
}

TEST_F(LookupTest, ABareExecutableLooksFurther) {
  fakeSystem().bundlePath = "/usr/local/bin";
  EXPECT_EQ(ResourceLocator::find("dict_en"), named_.path() / "dict_en.txt");
}

}  // namespace
}  // namespace tessarok::macos

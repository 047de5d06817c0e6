#include <gtest/gtest.h>

#include "desktops/posix/DataDirectoryBundle.h"
#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/support/TestFiles.h"

namespace tessarok::posix {
namespace {

using virtualdesktop::TemporaryDirectory;

TEST(DataDirectoryBundle, FindsFilesOfTheNamedDirectory) {
  TemporaryDirectory directory;
  testing::writeFile(directory.path() / "dict_en.txt", "a\n");
  DataDirectoryBundle bundle(directory.path());
  EXPECT_TRUE(bundle.isApplication());
  EXPECT_EQ(bundle.resource("dict_en", "txt"), directory.path() / "dict_en.txt");
  EXPECT_FALSE(bundle.resource("dict_ru", "txt").has_value());
}

TEST(DataDirectoryBundle, AMissingDirectoryIsStillTheOnlyOne) {
  DataDirectoryBundle bundle(std::filesystem::path("/no/such/directory"));
  EXPECT_TRUE(bundle.isApplication());
  EXPECT_FALSE(bundle.resource("dict_en", "txt").has_value());
}

TEST(DataDirectoryBundle, AProgramInABuildDirectoryIsNotInstalled) {
  DataDirectoryBundle bundle(std::nullopt);
  EXPECT_FALSE(bundle.isApplication());
  EXPECT_FALSE(bundle.resource("dict_en", "txt").has_value());
  EXPECT_FALSE(bundle.identifier().has_value());
}

}  // namespace
}  // namespace tessarok::posix

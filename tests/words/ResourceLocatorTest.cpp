#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/support/FakeDesktop.h"
#include "tests/support/TestFiles.h"
#include "words/ResourceLocator.h"

namespace tessarok {
namespace {

namespace fs = std::filesystem;
using testing::FakeDesktop;
using testing::writeFile;
using virtualdesktop::TemporaryDirectory;

/// A bare executable in a working directory of its own.
class ResourceLocatorTest : public ::testing::Test {
 protected:
  ResourceLocatorTest() {
    desktop.bundle().installed = false;
    fs::current_path(work.path());
  }
  ~ResourceLocatorTest() override { fs::current_path("/"); }

  FakeDesktop desktop;
  TemporaryDirectory work;
  TemporaryDirectory named;
};

TEST_F(ResourceLocatorTest, TheBundlesAnswerIsTakenUnchecked) {
  desktop.bundle().resources["dict_en.txt"] = "/nowhere/dict_en.txt";
  EXPECT_EQ(ResourceLocator::find("dict_en"), fs::path("/nowhere/dict_en.txt"));
}

TEST_F(ResourceLocatorTest, AnInstalledProgramLooksNowhereElse) {
  desktop.bundle().installed = true;
  writeFile(named.path() / "dict_en.txt", "a\n");
  writeFile(work.path() / "Resources" / "dict_en.txt", "a\n");
  desktop.environment().variables["TESSAROK_RES"] = named.path();
  EXPECT_FALSE(ResourceLocator::find("dict_en").has_value());
}

TEST_F(ResourceLocatorTest, TheNamedDirectoryComesBeforeTheWorkingDirectory) {
  writeFile(named.path() / "dict_en.txt", "a\n");
  writeFile(work.path() / "Resources" / "dict_en.txt", "a\n");
  desktop.environment().variables["TESSAROK_RES"] = named.path();
  EXPECT_EQ(ResourceLocator::find("dict_en"), named.path() / "dict_en.txt");
}

TEST_F(ResourceLocatorTest, TheEnvironmentIsReadAfreshOnEveryCall) {
  writeFile(named.path() / "private_list.txt", "a\n");
  EXPECT_FALSE(ResourceLocator::find("private_list").has_value());
  desktop.environment().variables["TESSAROK_RES"] = named.path();
  EXPECT_EQ(ResourceLocator::find("private_list"), named.path() / "private_list.txt");
  desktop.environment().variables.clear();
  EXPECT_FALSE(ResourceLocator::find("private_list").has_value());
}

TEST_F(ResourceLocatorTest, TheWorkingDirectoryComesBeforeTheSourceTree) {
  writeFile(work.path() / "Resources" / "dict_en.txt", "a\n");
  const auto found = ResourceLocator::find("dict_en");
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(fs::canonical(*found), fs::canonical(work.path() / "Resources" / "dict_en.txt"));
}

TEST_F(ResourceLocatorTest, TheSourceTreeIsTheLastResort) {
  // The hand-written lists lie in every checkout.
  const auto found = ResourceLocator::find("pack_it");
  ASSERT_TRUE(found.has_value());
  EXPECT_TRUE(fs::exists(*found));
  EXPECT_EQ(found->parent_path().filename(), "Resources");
  EXPECT_TRUE(found->is_absolute());
}

TEST_F(ResourceLocatorTest, AFileThatIsNotReadableIsSkipped) {
  desktop.environment().variables["TESSAROK_RES"] = named.path();
  writeFile(work.path() / "Resources" / "private_list.txt", "a\n");
  // A link to nowhere exists but cannot be read, not even by the superuser.
  fs::create_symlink("/nowhere/at/all", named.path() / "private_list.txt");
  EXPECT_EQ(ResourceLocator::find("private_list"), fs::path("Resources/private_list.txt"));
}

TEST_F(ResourceLocatorTest, AFileWithoutReadPermissionIsSkipped) {
  if (::geteuid() == 0) GTEST_SKIP() << "the superuser may read everything";
  desktop.environment().variables["TESSAROK_RES"] = named.path();
  writeFile(named.path() / "private_list.txt", "a\n");
  fs::permissions(named.path() / "private_list.txt", fs::perms::none);
  EXPECT_FALSE(ResourceLocator::find("private_list").has_value());
}

TEST_F(ResourceLocatorTest, AnEmptyNamedDirectoryIsTheWorkingDirectory) {
  desktop.environment().variables["TESSAROK_RES"] = "";
  writeFile(work.path() / "private_list.txt", "a\n");
  const auto found = ResourceLocator::find("private_list");
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(fs::canonical(*found), fs::canonical(work.path() / "private_list.txt"));
}

TEST_F(ResourceLocatorTest, WhatIsNowhereIsAbsent) {
  EXPECT_FALSE(ResourceLocator::find("no_such_list").has_value());
}

}  // namespace
}  // namespace tessarok

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "desktops/posix/PosixFiles.h"
#include "desktops/posix/SettingsFile.h"
#include "desktops/virtual/TemporaryDirectory.h"
#include "desktops/xkb/ManualKey.h"
#include "tests/support/TestFiles.h"

namespace tessarok::xkb {
namespace {

class Log final : public platform::SystemLog {
 public:
  void write(std::string_view message) override { messages.emplace_back(message); }
  std::vector<std::string> messages;
};

class ManualKeySetting : public ::testing::Test {
 protected:
  virtualdesktop::TemporaryDirectory folder_;
  std::filesystem::path file_ = folder_.path() / "settings.json";
  posix::PosixFiles files_{folder_.path(), std::nullopt};
  Log log_;
};

TEST(ManualKey, HasThreeNames) {
  ASSERT_TRUE(ManualKey::named("both"));
  EXPECT_TRUE(ManualKey::named("both")->altSpace);
  EXPECT_TRUE(ManualKey::named("both")->pause);
  EXPECT_FALSE(ManualKey::named("pause")->altSpace);
  EXPECT_TRUE(ManualKey::named("pause")->pause);
  EXPECT_TRUE(ManualKey::named("alt-space")->altSpace);
  EXPECT_FALSE(ManualKey::named("alt-space")->pause);
  EXPECT_FALSE(ManualKey::named("Pause"));
  EXPECT_FALSE(ManualKey::named(""));
}

TEST_F(ManualKeySetting, StaysWhenASwitchIsSaved) {
  tessarok::testing::writeFile(file_, R"({"manualKey": "pause", "pack.it": true})");
  posix::SettingsFile(file_, files_, log_).setBoolean("pack.it", false);
  posix::SettingsFile settings(file_, files_, log_);
  EXPECT_EQ(settings.string(ManualKey::kSetting), "pause");
  EXPECT_EQ(settings.boolean("pack.it"), false);
  EXPECT_EQ(settings.boolean(ManualKey::kSetting), std::nullopt);
  EXPECT_EQ(settings.string("pack.it"), std::nullopt);
  EXPECT_TRUE(log_.messages.empty());
}

TEST_F(ManualKeySetting, IsAText) {
  tessarok::testing::writeFile(file_, R"({"manualKey": true})");
  posix::SettingsFile settings(file_, files_, log_);
  EXPECT_EQ(settings.string(ManualKey::kSetting), std::nullopt);
  ASSERT_EQ(log_.messages.size(), 1u);
  EXPECT_NE(log_.messages[0].find("\"manualKey\" is no text"), std::string::npos);
}

}  // namespace
}  // namespace tessarok::xkb

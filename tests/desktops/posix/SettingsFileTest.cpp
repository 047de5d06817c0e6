#include <cstdlib>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "desktops/posix/PosixFiles.h"
#include "desktops/posix/SettingsFile.h"
#include "desktops/virtual/TemporaryDirectory.h"

namespace tessarok::posix {
namespace {

/// Empty where there is no file, but a directory, say.
std::string contentOf(const std::filesystem::path& file) {
  std::ifstream in(file);
  std::ostringstream content;
  content << in.rdbuf();
  return content.str();
}

class Log final : public platform::SystemLog {
 public:
  void write(std::string_view message) override { messages.emplace_back(message); }
  std::vector<std::string> messages;
};

/// Something happens behind the first reading, before its result is taken.
class InterruptedFiles final : public PosixFiles {
 public:
  using PosixFiles::PosixFiles;
  std::optional<std::string> read(const std::filesystem::path& file,
                                  std::string* error = nullptr) override {
    auto text = PosixFiles::read(file, error);
    if (const auto interruption = std::exchange(afterFirstReading, nullptr)) interruption();
    return text;
  }
  std::function<void()> afterFirstReading;
};

class SettingsFileTest : public ::testing::Test {
 protected:
  void write(std::string_view text) const {
    std::filesystem::create_directories(file_.parent_path());
    std::ofstream(file_) << text;
  }
  /// The file could not be used: one message, and nothing is saved in it.
  void expectUnusable(std::string_view reason) {
    const auto before = contentOf(file_);
    SettingsFile settings(file_, files_, log_);
    EXPECT_EQ(settings.boolean("shiftLagFix"), std::nullopt);
    settings.setBoolean("shiftLagFix", false);
    settings.setBoolean("pack.it", true);
    settings.flush();
    EXPECT_EQ(settings.boolean("shiftLagFix"), false);
    EXPECT_EQ(settings.boolean("pack.it"), true);
    ASSERT_EQ(log_.messages.size(), 1u);
    EXPECT_NE(log_.messages[0].find(file_.string()), std::string::npos) << log_.messages[0];
    EXPECT_NE(log_.messages[0].find(reason), std::string::npos) << log_.messages[0];
    EXPECT_EQ(contentOf(file_), before);
  }

  virtualdesktop::TemporaryDirectory folder_;
  std::filesystem::path file_ = folder_.path() / "Tessarok" / "settings.json";
  PosixFiles files_{folder_.path(), std::nullopt};
  Log log_;
};

TEST_F(SettingsFileTest, SaysTheLineThatIsNoJson) {
  write("{\n  \"pack.it\": true\n  \"pack.chat\": true\n}\n");
  EXPECT_EQ(SettingsFile(file_, files_, log_).problem(), "line 3 is not valid JSON");
  write("");
  EXPECT_EQ(SettingsFile(file_, files_, log_).problem(), "line 1 is not valid JSON");
}

TEST_F(SettingsFileTest, HasNoProblemWithAGoodFileOrNone) {
  EXPECT_EQ(SettingsFile(file_, files_, log_).problem(), std::nullopt);
  write("{}");
  EXPECT_EQ(SettingsFile(file_, files_, log_).problem(), std::nullopt);
}

TEST_F(SettingsFileTest, KeepsWhatIsSet) {
  {
    SettingsFile settings(file_, files_, log_);
    EXPECT_EQ(settings.boolean("shiftLagFix"), std::nullopt);
    settings.setBoolean("shiftLagFix", false);
    settings.setBoolean("pack.it", true);
    settings.flush();
  }
  SettingsFile settings(file_, files_, log_);
  EXPECT_EQ(settings.boolean("shiftLagFix"), false);
  EXPECT_EQ(settings.boolean("pack.it"), true);
  EXPECT_EQ(settings.boolean("pack.chat"), std::nullopt);
  EXPECT_TRUE(log_.messages.empty());
}

TEST_F(SettingsFileTest, DoesNotUndoWhatAnotherCopyHasSaved) {
  SettingsFile one(file_, files_, log_);
  SettingsFile other(file_, files_, log_);
  EXPECT_EQ(one.boolean("pack.it"), std::nullopt);
  other.setBoolean("pack.chat", true);
  other.flush();
  one.setBoolean("pack.it", true);
  one.flush();
  EXPECT_EQ(SettingsFile(file_, files_, log_).boolean("pack.chat"), true);
}

TEST_F(SettingsFileTest, NothingIsKnownUntilThePreparationThatReadingIsLeftTo) {
  write(R"({"shiftLagFix": false, "manualKey": "pause"})");
  SettingsFile settings(file_, files_, log_);
  settings.leaveReadingToPrepare();
  EXPECT_EQ(settings.boolean("shiftLagFix"), std::nullopt);
  EXPECT_EQ(settings.string("manualKey"), std::nullopt);
  settings.prepare();
  EXPECT_EQ(settings.boolean("shiftLagFix"), false);
  EXPECT_EQ(settings.string("manualKey"), "pause");
}

TEST_F(SettingsFileTest, WhatIsSetBeforeThePreparationStays) {
  write(R"({"shiftLagFix": false, "manualKey": "pause"})");
  SettingsFile settings(file_, files_, log_);
  settings.leaveReadingToPrepare();
  settings.setBoolean("shiftLagFix", true);
  settings.prepare();
  EXPECT_EQ(settings.boolean("shiftLagFix"), true);
  EXPECT_EQ(settings.string("manualKey"), "pause");
  settings.flush();
  EXPECT_EQ(contentOf(file_), "{\n  \"manualKey\": \"pause\",\n  \"shiftLagFix\": true\n}\n");
}

TEST_F(SettingsFileTest, WhatIsSavedWhileTheFileIsReadStays) {
  write(R"({"shiftLagFix": false, "manualKey": "pause"})");
  InterruptedFiles files(folder_.path(), std::nullopt);
  SettingsFile settings(file_, files, log_);
  settings.leaveReadingToPrepare();
  files.afterFirstReading = [&settings] {
    settings.setBoolean("shiftLagFix", true);
    settings.flush();
  };
  settings.prepare();
  EXPECT_EQ(settings.boolean("shiftLagFix"), true);
  EXPECT_EQ(settings.string("manualKey"), "pause");
}

TEST_F(SettingsFileTest, LeavesAMalformedFileAlone) {
  write("{\"shiftLagFix\": tru}");
  expectUnusable("line 1");
}

TEST_F(SettingsFileTest, LeavesAFileOfAnotherKindAlone) {
  write("[true]");
  expectUnusable("no JSON object");
}

TEST_F(SettingsFileTest, LeavesAFileWithOtherValuesAlone) {
  write("{\"shiftLagFix\": \"no\"}");
  expectUnusable("\"shiftLagFix\" is neither true nor false");
}

TEST_F(SettingsFileTest, AListOfTextsIsReadAndSurvivesASave) {
  write(R"({"fullScreen": ["irssi", "weechat"]})");
  {
    SettingsFile settings(file_, files_, log_);
    EXPECT_EQ(settings.strings("fullScreen"), (std::vector<std::string>{"irssi", "weechat"}));
    EXPECT_EQ(settings.strings("other"), std::vector<std::string>());
    EXPECT_EQ(settings.string("fullScreen"), std::nullopt);
    settings.setBoolean("pack.it", true);
    settings.flush();
  }
  SettingsFile settings(file_, files_, log_);
  EXPECT_EQ(settings.strings("fullScreen"), (std::vector<std::string>{"irssi", "weechat"}));
  EXPECT_EQ(settings.boolean("pack.it"), true);
}

TEST_F(SettingsFileTest, SaysThatAListIsNone) {
  write(R"({"fullScreen": "irssi"})");
  expectUnusable("\"fullScreen\" is no list of texts");
}

TEST_F(SettingsFileTest, SaysThatAListHoldsWhatIsNoText) {
  write(R"({"fullScreen": ["irssi", 1]})");
  expectUnusable("\"fullScreen\" is no list of texts");
}

TEST_F(SettingsFileTest, SaysWhyAFileCannotBeRead) {
  std::filesystem::create_directories(file_);
  expectUnusable("directory");
}

TEST_F(SettingsFileTest, AChangeThatCannotBeSavedIsKeptInMemory) {
  // A file where the folder has to be.
  std::ofstream(folder_.path() / "Tessarok") << "in the way";
  SettingsFile settings(file_, files_, log_);
  settings.setBoolean("pack.it", true);
  settings.setBoolean("pack.chat", true);
  settings.flush();
  EXPECT_EQ(settings.boolean("pack.it"), true);
  EXPECT_EQ(settings.boolean("pack.chat"), true);
  ASSERT_EQ(log_.messages.size(), 1u);
  EXPECT_NE(log_.messages[0].find(file_.string()), std::string::npos);
}

TEST_F(SettingsFileTest, LiesWhereConfigurationsLie) {
  ::setenv("XDG_CONFIG_HOME", "/elsewhere", 1);
  EXPECT_EQ(SettingsFile::locationFor("/home/me"), "/elsewhere/Tessarok/settings.json");
  ::setenv("XDG_CONFIG_HOME", "relative", 1);
  EXPECT_EQ(SettingsFile::locationFor("/home/me"), "/home/me/.config/Tessarok/settings.json");
  ::unsetenv("XDG_CONFIG_HOME");
  EXPECT_EQ(SettingsFile::locationFor("/home/me"), "/home/me/.config/Tessarok/settings.json");
}

}  // namespace
}  // namespace tessarok::posix

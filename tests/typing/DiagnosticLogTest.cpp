#include <gtest/gtest.h>

#include "tests/support/FakeDesktop.h"
#include "tests/support/TestFiles.h"
#include "typing/DiagnosticLog.h"
#include "typing/KeyTap.h"

namespace tessarok {
namespace {

namespace fs = std::filesystem;
using testing::FakeDesktop;
using testing::readFile;
using testing::writeFile;

constexpr std::size_t kLimit = 1'048'576;

TEST(DiagnosticLog, IsOffAndBuildsNoMessageWithoutTheVariable) {
  FakeDesktop desktop;
  EXPECT_FALSE(DiagnosticLog::isOn());
  int built = 0;
  KeyTap::dbg([&] {
    ++built;
    return "message";
  });
  DiagnosticLog::write("message");
  EXPECT_EQ(built, 0);
  EXPECT_FALSE(fs::exists(desktop.home() / "tessarok.log"));
}

TEST(DiagnosticLog, AnEmptyVariableTurnsItOn) {
  FakeDesktop desktop;
  desktop.environment().variables["TESSAROK_DEBUG"] = "";
  EXPECT_TRUE(DiagnosticLog::isOn());
  KeyTap::dbg([] { return "первое"; });
  KeyTap::dbg([] { return std::string("  second"); });
  DiagnosticLog::drain();
  EXPECT_EQ(readFile(desktop.home() / "tessarok.log"), "первое\n  second\n");
}

TEST(DiagnosticLog, TheNamedFileIsCreatedByTheFirstLine) {
  FakeDesktop desktop;
  const auto file = desktop.home() / "own.log";
  desktop.environment().variables["TESSAROK_DEBUG"] = "0";
  desktop.environment().variables["TESSAROK_DEBUG_PATH"] = file;
  DiagnosticLog::write("line");
  DiagnosticLog::drain();
  EXPECT_EQ(readFile(file), "line\n");
  EXPECT_FALSE(fs::exists(desktop.home() / "tessarok.log"));
}

TEST(DiagnosticLog, AFullLogIsAppendedTo) {
  FakeDesktop desktop;
  desktop.environment().variables["TESSAROK_DEBUG"] = "";
  const auto file = desktop.home() / "tessarok.log";
  writeFile(file, std::string(kLimit, 'x'));
  DiagnosticLog::write("line");
  DiagnosticLog::drain();
  EXPECT_EQ(readFile(file), std::string(kLimit, 'x') + "line\n");
}

TEST(DiagnosticLog, AnOverfullLogStartsAgainEmpty) {
  FakeDesktop desktop;
  desktop.environment().variables["TESSAROK_DEBUG"] = "";
  const auto file = desktop.home() / "tessarok.log";
  writeFile(file, std::string(kLimit + 1, 'x'));
  DiagnosticLog::write("line");
  DiagnosticLog::write("next");
  DiagnosticLog::drain();
  EXPECT_EQ(readFile(file), "line\nnext\n");
}

TEST(DiagnosticLog, TheVariablesAreReadOnce) {
  FakeDesktop desktop;
  desktop.environment().variables["TESSAROK_DEBUG"] = "";
  DiagnosticLog::write("one");
  desktop.environment().variables["TESSAROK_DEBUG_PATH"] = desktop.home() / "other.log";
  DiagnosticLog::write("two");
  desktop.environment().variables.erase("TESSAROK_DEBUG");
  DiagnosticLog::write("three");
  DiagnosticLog::drain();
  EXPECT_EQ(readFile(desktop.home() / "tessarok.log"), "one\ntwo\nthree\n");
  EXPECT_FALSE(fs::exists(desktop.home() / "other.log"));
}

TEST(DiagnosticLog, StaysOffWhenTheVariableComesLate) {
  FakeDesktop desktop;
  DiagnosticLog::write("one");
  desktop.environment().variables["TESSAROK_DEBUG"] = "";
  DiagnosticLog::write("two");
  DiagnosticLog::drain();
  EXPECT_FALSE(fs::exists(desktop.home() / "tessarok.log"));
}

TEST(DiagnosticLog, AFileThatCannotBeWrittenIsIgnored) {
  FakeDesktop desktop;
  desktop.environment().variables["TESSAROK_DEBUG"] = "";
  desktop.environment().variables["TESSAROK_DEBUG_PATH"] = desktop.home() / "no" / "such.log";
  DiagnosticLog::write("one");
  DiagnosticLog::drain();
  EXPECT_FALSE(fs::exists(desktop.home() / "no"));
}

TEST(DiagnosticLog, LinesComeInTheOrderOfTheirMessages) {
  FakeDesktop desktop;
  desktop.environment().variables["TESSAROK_DEBUG"] = "1";
  std::string expected;
  for (int i = 0; i < 500; ++i) {
    DiagnosticLog::write(std::to_string(i));
    expected += std::to_string(i) + "\n";
  }
  DiagnosticLog::drain();
  EXPECT_EQ(readFile(desktop.home() / "tessarok.log"), expected);
}

}  // namespace
}  // namespace tessarok

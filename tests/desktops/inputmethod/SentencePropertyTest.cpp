// Random sentences at random speeds, in programs that delay, reorder, lose and misreport as those
// that were measured: what stands in them in the end is what stands on the virtual desktop.

#include <gtest/gtest.h>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

#include "tests/desktops/fcitx5/Sentences.h"
#include "tests/desktops/inputmethod/SimulatedSession.h"
#include "tests/support/SoakTyping.h"

namespace tessarok::testing {
namespace {

using Kind = SimulatedProgram::Kind;
using Layouts = SimulatedSession::Layouts;
using Reports = SimulatedProgram::Reports;

constexpr int kSentences = 25;
/// Seconds between two keys at most, of which each run takes one.
constexpr double kSpeeds[] = {0.002, 0.01, 0.03, 0.1};

std::vector<Kind> kinds() {
  std::vector<Kind> all;
  all.push_back({.name = "Gtk3",
                 .habits = {},
                 .reports = Reports::all,
                 .canDelete = true,
                 .resets = true,
                 .key = {0, 0.004},
                 .text = {0, 0.001},
                 .report = {0, 0.004}});
  all.push_back({.name = "Gtk4",
                 .habits = {.maySwapBytes = true, .readsModifiersLate = true},
                 .reports = Reports::lastWords,
                 .canDelete = true,
                 .deletesBytes = true,
                 .key = {0.001, 0.02},
                 .text = {0, 0.002},
                 .report = {0.001, 0.01}});
  all.push_back({.name = "Qt",
                 .habits = {.maySwapBytes = true, .readsModifiersLate = true},
                 .reports = Reports::all,
                 .canDelete = true,
                 .key = {0, 0.006},
                 .text = {0, 0.001},
                 .report = {0, 0.006},
                 .oneLostOf = 20,
                 .oneWrongOf = 25});
  all.push_back({.name = "FirefoxOnKwin",
                 .habits = {.maySwapBytes = true, .readsModifiersLate = true, .losesShift = true},
                 .reports = Reports::line,
                 .canDelete = true,
                 .key = {0.002, 0.02},
                 .text = {0, 0.004},
                 .report = {0.03, 0.12}});
  all.push_back({.name = "Chromium",
                 .habits = {.maySwapBytes = true, .readsModifiersLate = true},
                 .reports = Reports::emptyText,
                 .canDelete = true,
                 .ignoresDeletion = true,
                 .key = {0.001, 0.006},
                 .text = {0, 0.001},
                 .report = {0, 0.005}});
  all.push_back({.name = "Terminal",
                 .habits = {.readsModifiersLate = true},
                 .key = {0, 0.012},
                 .text = {0, 0.001},
                 .report = {}});
  // With a busy compositor between.
  all.push_back(
      {.name = "TerminalOnWayland",
       .habits = {.readsModifiersLate = true, .settle = inputmethod::Client::kSettleOfSilence},
       .key = {0, 0.036},
       .text = {0, 0.001},
       .report = {}});
  all.push_back({.name = "TerminalThatDraws",
                 .habits = {.readsModifiersLate = true,
                            .takesOneTextAtATime = true,
                            .settle = inputmethod::Client::kSettleOfSilence},
                 .isBlindWhileDrawing = true,
                 .key = {0, 0.001},
                 .text = {0, 0.0002},
                 .report = {}});
  return all;
}

struct Case {
  Kind kind;
  Layouts layouts;
  int number;
};

std::vector<Case> cases() {
  std::vector<Case> all;
  for (const auto& kind : kinds()) {
    for (const auto layouts :
         {Layouts::frameworks, Layouts::desktops, Layouts::desktopsBeforeTheWay}) {
      for (int number = 0; number < static_cast<int>(std::size(kSpeeds)); ++number) {
        auto one = kind;
        // GNOME's shell keeps the last of several texts only.
        if (layouts == Layouts::desktops) one.habits.takesOneTextAtATime = true;
        one.losesTexts = layouts == Layouts::desktops;
        // Only Fcitx on KWin.
        one.habits.losesShift = one.habits.losesShift && layouts == Layouts::frameworks;
        all.push_back({one, layouts, number});
      }
    }
  }
  return all;
}

std::string nameOf(const ::testing::TestParamInfo<Case>& info) {
  const auto& [kind, layouts, number] = info.param;
  const char* whose = "";
  if (layouts == Layouts::desktops) whose = "WithTheDesktopsLayouts";
  if (layouts == Layouts::desktopsBeforeTheWay) whose = "WithLayoutsBeforeTheWay";
  return kind.name + whose + "At" + std::to_string(static_cast<int>(kSpeeds[number] * 1000)) +
         "Milliseconds";
}

/// Compares up to the first line that differs.
void expectSameLines(const std::string& text, const std::string& expected) {
  std::istringstream is(text);
  std::istringstream shouldBe(expected);
  std::string line;
  for (std::string wanted; std::getline(shouldBe, wanted);) {
    std::getline(is, line);
    ASSERT_EQ(line, wanted);
  }
  EXPECT_EQ(text.size(), expected.size());
}

class InputMethodSentences : public ::testing::TestWithParam<Case> {};

TEST_P(InputMethodSentences, ComeOutAsOnTheVirtualDesktop) {
  const auto& [kind, layouts, number] = GetParam();
  const auto seed = static_cast<unsigned>(number) + 1;
  const auto lines = sentences(kSentences, seed);
  const auto keys = std::accumulate(lines.begin(), lines.end(), std::string());
  SimulatedSession session(kind, layouts, seed);
  session.type(keys, kSpeeds[number]);
  expectSameLines(session.textInTheEnd(), onTheVirtualDesktop(keys));
  EXPECT_EQ(session.messages(), "");
}

/// Fcitx's part for GTK 4: what is sent to it, and the keys that are let through, keep their order.
Kind gtk4WithItsPart() {
  return {.name = "Gtk4WithItsPart",
          .habits = {.takesNoKeysBack = true},
          .reports = Reports::lastWords,
          .canDelete = true,
          .key = {0.001, 0.004},
          .text = {0, 0.001},
          .report = {0.001, 0.004}};
}

TEST(InputMethodKeys, NoneIsLostWhereNoneCanBeHandedBack) {
  for (const double speed : kSpeeds) {
    const auto lines = sentences(kSentences, 5);
    const auto keys = std::accumulate(lines.begin(), lines.end(), std::string());
    SimulatedSession session(gtk4WithItsPart(), Layouts::frameworks, 5);
    session.type(keys, speed);
    SoakTyping typing(1);
    typing.note(keys);
    const auto shown = SoakTyping::keysOf(session.textInTheEnd());
    EXPECT_EQ(shown, SoakTyping::keysOf(typing.onScreen())) << speed;
  }
}

TEST(InputMethodKeys, AWordStaysWhereNeitherDeletionNorBackspaceReachesIt) {
  auto kind = gtk4WithItsPart();
  kind.canDelete = false;
  SimulatedSession session(kind, Layouts::frameworks, 1);
  session.type("ghbdtn, hello ", 0.1);
  EXPECT_EQ(session.textInTheEnd(), "ghbdtn, руддщ ");
}

TEST(InputMethodKeys, AWordStaysBeforeAReturnThatCannotBeHandedBack) {
  SimulatedSession session(gtk4WithItsPart(), Layouts::frameworks, 1);
  for (const char key : std::string("ghbdtn hello\nghbdtn ")) {
    session.type(std::string(1, key), 0);
    session.wait(0.1);
  }
  EXPECT_EQ(session.textInTheEnd(), "привет руддщ\nпривет ");
}

void PrintTo(const Case& one, std::ostream* out) {
  *out << one.kind.name;
}

INSTANTIATE_TEST_SUITE_P(Programs, InputMethodSentences, ::testing::ValuesIn(cases()), nameOf);

}  // namespace
}  // namespace tessarok::testing

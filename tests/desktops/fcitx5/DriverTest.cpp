// The addon in a real Fcitx without any display: its configuration page, and groups of input
// methods in which there is no pair of layouts to correct between.

#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <vector>

#include "tests/desktops/fcitx5/FcitxProcess.h"
#include "tests/desktops/fcitx5/StoryScript.h"
#include "tests/desktops/freedesktop/SilentBus.h"
#include "tests/support/TestFiles.h"

namespace tessarok::testing {
namespace {

using nlohmann::json;

json types(const std::string& keys, const std::string& text) {
  return {{"strokes", StoryScript::strokesFor(keys)}, {"text", text}};
}

/// Plays steps in a field of a program that reports its text. What went wrong.
std::string play(const FcitxHome& home, const std::vector<json>& steps) {
  return driveFcitx(home, {{"client", {{"reports", "all"}}}, {"steps", steps}});
}

json page(const json& changes = json::object()) {
  json shown = {{"ShiftFix", "True"},
                {"ManualKey", "Alt+Space and Pause"},
                {"PauseKey", "Grave accent in the English layout"},
                {"PackIt", "True"},
                {"PackChat", "True"},
                {"PackGaming", "False"}};
  shown.update(changes);
  return shown;
}

class Fcitx5Page : public ::testing::Test {
 protected:
  void writeSettings(const json& settings) const { writeFile(home_.settings(), settings.dump()); }
  [[nodiscard]] json settings() const { return json::parse(readFile(home_.settings())); }

  FcitxHome home_{{"keyboard-us", "keyboard-ru"}};
};

TEST_F(Fcitx5Page, ShowsTheDefaults) {
  EXPECT_EQ(play(home_, {{{"page", page()}}}), "");
  EXPECT_FALSE(std::filesystem::exists(home_.settings()));
}

TEST_F(Fcitx5Page, ShowsTheSettings) {
  writeSettings({{"shiftLagFix", false}, {"manualKey", "pause"}, {"pack.gaming", true}});
  const auto expected =
      page({{"ShiftFix", "False"}, {"ManualKey", "Pause"}, {"PackGaming", "True"}});
  EXPECT_EQ(play(home_, {{{"page", expected}}}), "");
}

TEST_F(Fcitx5Page, AChangeTakesEffectAtOnceAndIsKept) {
  EXPECT_EQ(play(home_,
                 {types("HEllo ", "Hello "),
                  {{"configure", {{"ShiftFix", "False"}}}, {"page", page({{"ShiftFix", "False"}})}},
                  types("HEllo ", "Hello HEllo ")}),
            "");
  // Nothing but what was changed.
  EXPECT_EQ(settings(), (json{{"shiftLagFix", false}}));
}

TEST_F(Fcitx5Page, PacksAreSwitchedOnAndOff) {
  EXPECT_EQ(play(home_, {{{"configure", {{"PackIt", "False"}, {"PackGaming", "True"}}},
                          {"page", page({{"PackIt", "False"}, {"PackGaming", "True"}})}}}),
            "");
  EXPECT_EQ(settings(), (json{{"pack.it", false}, {"pack.gaming", true}}));
}

TEST_F(Fcitx5Page, TheKeyForConversionsByHandIsChosen) {
  const auto altSpace = json{{"symbol", 0x20}, {"states", 8}, {"key", 65}};
  const json converts = {{"strokes", {altSpace}}};
  auto before = converts;
  before["text"] = "руддщ";
  EXPECT_EQ(play(home_, {types("hello", "hello"), before}), "");
  auto after = converts;
  after["text"] = "hello\u00a0";
  EXPECT_EQ(
      play(home_, {{{"configure", {{"ManualKey", "Pause"}}}}, types("hello", "hello"), after}), "");
  EXPECT_EQ(settings(), (json{{"manualKey", "pause"}}));
}

TEST_F(Fcitx5Page, TheKeyThatPausesIsChosen) {
  // One that pauses lets nothing be put right for five seconds.
  EXPECT_EQ(play(home_, {types("` vbh ", "` vbh ")}), "");
  EXPECT_EQ(
      play(home_, {{{"configure", {{"PauseKey", "None"}}}, {"page", page({{"PauseKey", "None"}})}},
                   types("cfvjk`n ", "самолёт ")}),
      "");
  EXPECT_EQ(settings(), (json{{"pauseKey", "none"}}));
}

TEST_F(Fcitx5Page, ValuesThatAreNoneChangeNothing) {
  EXPECT_EQ(play(home_,
                 {{{"configure", {{"ShiftFix", "perhaps"}, {"ManualKey", "F1"}}}, {"page", page()}},
                  types("ghbdtn ", "привет ")}),
            "");
  EXPECT_FALSE(std::filesystem::exists(home_.settings()));
}

TEST_F(Fcitx5Page, SettingsFromElsewhereAreRead) {
  writeSettings({{"shiftLagFix", false}});
  EXPECT_EQ(play(home_, {types("HEllo ", "HEllo "),
                         {{"reload", {{"shiftLagFix", true}, {"pack.chat", false}}},
                          {"page", page({{"PackChat", "False"}})}},
                         types("HEllo ", "HEllo Hello ")}),
            "");
}

TEST(Fcitx5Group, WithOneLayoutWordsStayUntilTheOtherComes) {
  const FcitxHome home({"keyboard-us"});
  EXPECT_EQ(play(home, {types("ghbdtn rfr ", "ghbdtn rfr "),
                        {{"enable", {"keyboard-us", "keyboard-ru"}}},
                        types("ghbdtn ", "ghbdtn rfr привет ")}),
            "");
}

TEST(Fcitx5Group, WordsStayWhenTheOtherLayoutGoes) {
  const FcitxHome home({"keyboard-us", "keyboard-ru"});
  EXPECT_EQ(play(home, {types("ghbdtn ", "привет "),
                        {{"enable", {"keyboard-us"}}},
                        types("ghbdtn ", "привет ghbdtn ")}),
            "");
}

TEST(Fcitx5Group, ALayoutThatDoesNotExistIsNoObstacle) {
  const FcitxHome home({"keyboard-us", "keyboard-nosuch", "keyboard-ru"});
  EXPECT_EQ(play(home, {types("ghbdtn ", "привет ")}), "");
}

TEST(Fcitx5Group, AMissingInputMethodIsNoObstacle) {
  const FcitxHome home({"keyboard-us", "nosuch", "keyboard-ru"});
  EXPECT_EQ(play(home, {types("ghbdtn ", "привет ")}), "");
}

TEST(Fcitx5Group, WithoutTheEnglishLayoutWordsStay) {
  const FcitxHome home({"keyboard-de", "keyboard-ru"});
  EXPECT_EQ(play(home, {{{"select", "keyboard-de"}}, types("ghbdtn ", "ghbdtn ")}), "");
}

// A Russian word is put right by Backspaces then: of what such a program is asked to delete on
// Wayland it takes the bytes for characters.
TEST(Fcitx5Client, OneThatTakesBytesForCharactersLosesNothingOnWayland) {
  const FcitxHome home({"keyboard-us", "keyboard-ru"});
  const json client = {
      {"reports", "all"}, {"deletesBytes", true}, {"frontend", "wayland_v2"}, {"keyDelay", 2}};
  EXPECT_EQ(driveFcitx(home, {{"client", client},
                              {"steps", {types("lf ghbdtn hello ", "да привет hello ")}}}),
            "");
}

TEST(Fcitx5Client, CapitalsStayCapitalsWhereShiftIsReadLate) {
  const FcitxHome home({"keyboard-us", "keyboard-ru"});
  const json client = {
      {"reports", "all"}, {"readsShiftLate", true}, {"frontend", "wayland"}, {"keyDelay", 10}};
  EXPECT_EQ(
      driveFcitx(home, {{"client", client},
                        {"steps", {types("Hello World Ghbdtn Vbh ", "Hello World Привет Мир ")}}}),
      "");
}

TEST(Fcitx5Client, OneThatResetsAtEveryLetterIsCorrected) {
  const FcitxHome home({"keyboard-us", "keyboard-ru"});
  const json client = {{"reports", "all"}, {"resetsAlways", true}, {"keyDelay", 5}};
  EXPECT_EQ(driveFcitx(home, {{"client", client},
                              {"steps", {types("lf ghbdtn hello ", "да привет hello ")}}}),
            "");
}

TEST(Fcitx5Client, AFieldThatACorrectionDamagesIsLeftAlone) {
  const FcitxHome home({"keyboard-us", "keyboard-ru"});
  const json client = {{"reports", "all"}, {"deletesBytes", true}};
  EXPECT_EQ(driveFcitx(
                home, {{"client", client},
                       {"steps",
                        {types("lf ghbdtn ", "да привет "),
                         // Five letters more than those of the word are gone.
                         types("hello ", "да прhello "), types("ghbdtn ", "да прhello ghbdtn ")}}}),
            "");
}

TEST(Fcitx5Bus, WordsArePutRightWhenABusEnds) {
  const FcitxHome home({"keyboard-us", "keyboard-ru"});
  const SilentBus bus;
  const std::jthread end([&bus] { bus.hangUp(); });
  EXPECT_EQ(
      driveFcitx(home, {{"client", {{"reports", "all"}}}, {"steps", {types("ghbdtn ", "привет ")}}},
                 {.session = bus.address()}),
      "");
}

TEST(Fcitx5Group, AThirdLayoutIsLeftAlone) {
  const FcitxHome home({"keyboard-us", "keyboard-de", "keyboard-ru"});
  EXPECT_EQ(play(home, {{{"select", "keyboard-de"}},
                        types("ghbdtn ", "ghbdtn "),
                        {{"select", "keyboard-us"}},
                        types("ghbdtn ", "ghbdtn привет ")}),
            "");
}

}  // namespace
}  // namespace tessarok::testing

// Tessarok's engines in a real IBus daemon, and what it is told of them before.

#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <numeric>
#include <string>

#include "desktops/ibus/Component.h"
#include "desktops/ibus/Engine.h"
#include "tests/desktops/fcitx5/Sentences.h"
#include "tests/desktops/ibus/IbusSession.h"

namespace tessarok::testing {
namespace {

using Reports = IbusSession::Reports;

void expectSentences(Reports reports, int milliseconds) {
  IbusSession session(reports);
  ASSERT_TRUE(session.waitForCorrector());
  const auto lines = sentences(20, static_cast<unsigned>(milliseconds) + 1);
  const auto keys = std::accumulate(lines.begin(), lines.end(), std::string());
  // The layout that the word before has left on.
  const auto expected = onTheVirtualDesktop("ghbdtn " + keys).substr(std::string("привет ").size());
  session.type(keys, milliseconds);
  EXPECT_EQ(session.textInTheEnd(expected), expected);
}

TEST(IbusSentences, ComeOutInAProgramThatReportsItsText) {
  expectSentences(Reports::all, 5);
}

TEST(IbusSentences, ComeOutInAProgramThatReportsNothing) {
  expectSentences(Reports::nothing, 15);
}

TEST(IbusEngines, AWordSwitchesToTheOtherOne) {
  IbusSession session(Reports::all);
  ASSERT_TRUE(session.waitForCorrector());
  EXPECT_EQ(session.engine(), ibus::engine::kRussian);
  session.type("hello ", 10);
  EXPECT_EQ(session.textInTheEnd("hello "), "hello ");
  EXPECT_EQ(session.engine(), ibus::engine::kEnglish);
}

TEST(IbusEngines, KeysOfRightWordsPass) {
  IbusSession session(Reports::all);
  ASSERT_TRUE(session.waitForCorrector());
  const int before = session.swallowed();
  session.type("ghbdtn vbh\n", 10);
  EXPECT_EQ(session.textInTheEnd("привет мир\n"), "привет мир\n");
  EXPECT_EQ(session.swallowed(), before);
}

void expectLeftAlone(guint purpose, guint hints) {
  IbusSession session(Reports::all);
  ASSERT_TRUE(session.waitForCorrector());
  session.setContentType(purpose, hints);
  session.type("hello ", 10);
  EXPECT_EQ(session.textInTheEnd("руддщ "), "руддщ ");
  session.setContentType(IBUS_INPUT_PURPOSE_FREE_FORM, IBUS_INPUT_HINT_NONE);
  session.type("hello ", 10);
  EXPECT_EQ(session.textInTheEnd("руддщ hello "), "руддщ hello ");
}

TEST(IbusEngines, PasswordsAreLeftAlone) {
  expectLeftAlone(IBUS_INPUT_PURPOSE_PASSWORD, IBUS_INPUT_HINT_NONE);
}

TEST(IbusEngines, PrivateTextIsLeftAlone) {
  expectLeftAlone(IBUS_INPUT_PURPOSE_FREE_FORM, IBUS_INPUT_HINT_PRIVATE);
}

TEST(IbusEngines, ProgramsThatTakeNoKeysBackKeepTheirs) {
  IbusSession session(Reports::all);
  ASSERT_TRUE(session.waitForCorrector());
  session.openProgram("gtk4-im:entry");
  const int before = session.swallowed();
  session.type("hello\n", 10);
  EXPECT_EQ(session.textInTheEnd("руддщ\n"), "руддщ\n");
  EXPECT_EQ(session.swallowed(), before);
  session.openProgram("gtk3-im:entry");
  session.type("hello\n", 10);
  EXPECT_EQ(session.textInTheEnd("руддщ\nhello\n"), "руддщ\nhello\n");
}

TEST(IbusEngines, RestInSessionsOfX11) {
  IbusSession session(Reports::all, "x11");
  std::string expected;
  // The corrector would be there by the second word.
  for (int word = 0; word < 5; ++word) {
    session.type("ghbdtn ", 10);
    expected += "ghbdtn ";
    EXPECT_EQ(session.textInTheEnd(expected), expected);
  }
  EXPECT_EQ(session.engine(), ibus::engine::kEnglish);
  EXPECT_EQ(session.swallowed(), 0);
}

/// The layouts and titles of the engines, by their names.
std::map<std::string, std::string> enginesOf(IBusComponent* component) {
  std::map<std::string, std::string> engines;
  auto* list = ibus_component_get_engines(component);
  for (auto* item = list; item != nullptr; item = item->next) {
    auto* engine = static_cast<IBusEngineDesc*>(item->data);
    engines[ibus_engine_desc_get_name(engine)] = std::string(ibus_engine_desc_get_layout(engine)) +
                                                 " " + ibus_engine_desc_get_longname(engine);
  }
  g_list_free(list);
  return engines;
}

TEST(IbusComponent, TheFileSaysWhatTheProgramSays) {
  ibus_init();
  const auto file = std::string(TESSAROK_IBUS_COMPONENTS) + "/tessarok.xml";
  auto* read = ibus_component_new_from_file(file.c_str());
  ASSERT_NE(read, nullptr);
  const std::map<std::string, std::string> expected = {{"tessarok:us", "us English (Tessarok)"},
                                                       {"tessarok:ru", "ru Russian (Tessarok)"}};
  EXPECT_EQ(enginesOf(read), expected);
  EXPECT_EQ(enginesOf(ibus::component::make()), expected);
  EXPECT_STREQ(ibus_component_get_name(read), ibus::component::kBusName);
  const std::string command = ibus_component_get_exec(read);
  EXPECT_TRUE(std::filesystem::exists(command.substr(0, command.find(' ')))) << command;
}

}  // namespace
}  // namespace tessarok::testing

// The program as a person calls it from a shell.

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>
#include <unistd.h>

#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TestFiles.h"

namespace tessarok {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::ProgramRun;
using testing::runProgram;
using testing::runProgramReading;
using testing::writeFile;
using virtualdesktop::TemporaryDirectory;
using Arguments = std::vector<std::string>;

const std::string kData = TESSAROK_TEST_DATA;

/// Whatever is wrong with a call is one line on standard error and nothing else.
void expectRefusal(const ProgramRun& run) {
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_TRUE(run.err.ends_with('\n')) << run.err;
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run.err;
}

void expectOutput(const ProgramRun& run, std::string_view out) {
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, out);
  EXPECT_EQ(run.err, "");
}

ProgramRun type(Arguments arguments, std::string_view input = {}) {
  TemporaryDirectory home;
  arguments.insert(arguments.begin(), {"--resources", kData, "type"});
  return runProgram(arguments, input,
                    {{"HOME", home.path()}, {"XDG_DATA_HOME", ""}, {"XDG_CONFIG_HOME", ""}});
}

std::vector<json> explain(Arguments arguments, std::string_view input = {}) {
  TemporaryDirectory home;
  arguments.insert(arguments.begin(), {"--resources", kData, "explain", "--json"});
  const auto run = runProgram(arguments, input, {{"HOME", home.path()}, {"XDG_DATA_HOME", ""}});
  EXPECT_EQ(run.status, 0) << run.err;
  std::vector<json> lines;
  std::size_t start = 0;
  for (auto end = run.out.find('\n'); end != std::string::npos; end = run.out.find('\n', start)) {
    lines.push_back(json::parse(run.out.substr(start, end - start)));
    start = end + 1;
  }
  return lines;
}

TEST(CommandLine, HelpAndVersionSucceed) {
  for (const Arguments& arguments :
       {Arguments{"--help"}, Arguments{"-h"}, Arguments{"type", "--help"},
        Arguments{"replay", "--help"}, Arguments{"explain", "--help"},
        Arguments{"check-data", "--help"}}) {
    const auto run = runProgram(arguments);
    EXPECT_EQ(run.status, 0) << arguments.front();
    EXPECT_NE(run.out, "") << arguments.front();
    EXPECT_EQ(run.err, "") << arguments.front();
  }
  const auto version = runProgram({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_TRUE(version.out.starts_with("tessarok ")) << version.out;
  EXPECT_EQ(version.err, "");
}

TEST(CommandLine, WrongCallsAreRefused) {
  for (const Arguments& arguments : {
           Arguments{"no-such-command"},
           Arguments{"--no-such-option"},
           Arguments{"type", "--from", "de", "x"},
           Arguments{"type", "--from"},
           Arguments{"type", "--no-such-option"},
           Arguments{"explain"},
           Arguments{"learned", "forget"},
           Arguments{"explain", "--ru-streak", "many", "x"},
           Arguments{"replay", "a", "b"},
           Arguments{"check-data", "a", "b"},
           Arguments{"--resources"},
       }) {
    SCOPED_TRACE(::testing::PrintToString(arguments));
    expectRefusal(runProgram(arguments));
  }
}

TEST(CommandLine, AWrongNameIsAnsweredWithTheRightOne) {
  const std::vector<std::pair<Arguments, std::string>> calls = {
      {{"explian", "x"}, "there is no command \"explian\"; did you mean \"explain\"?"},
      // Typed in the Russian layout.
      {{"куздфн"}, "there is no command \"куздфн\"; did you mean \"replay\"?"},
      {{"learned", "fogret", "x"}, "there is no command \"fogret\"; did you mean \"forget\"?"},
      {{"--resorces", "x"}, "there is no option \"--resorces\"; did you mean \"--resources\"?"},
      {{"explain", "--jsn", "x"}, "there is no option \"--jsn\"; did you mean \"--json\"?"},
      {{"explain", "--resorces", "x"},
       "there is no option \"--resorces\"; did you mean \"--resources\"?"},
      {{"nonsense"}, "there is no command \"nonsense\"; tessarok --help lists what there is"},
      {{"replay", "a", "b"}, "\"b\" is one argument too many"},
  };
  for (const auto& [arguments, answer] : calls) {
    SCOPED_TRACE(::testing::PrintToString(arguments));
    const auto run = runProgram(arguments);
    expectRefusal(run);
    EXPECT_EQ(run.err, "tessarok: " + answer + "\n");
  }
}

TEST(CommandLine, AWrongValueIsNamedWithItsOption) {
  const std::vector<std::pair<Arguments, std::string>> calls = {
      {{"type", "--from", "fr", "x"}, "--from: \"fr\" is neither en nor ru"},
      {{"explain", "--ru-streak", "abc", "x"}, "--ru-streak: \"abc\" is not a whole number"},
      {{"explain", "--en-streak=-3", "x"}, "--en-streak: \"-3\" is not a whole number"},
      {{"explain", "--en-streak", "99999999999999999999", "x"},
       "--en-streak: \"99999999999999999999\" is not a whole number"},
      {{"explain", "--json=x", "y"}, "--json takes no value"},
      {{"explain", "--json=5", "y"}, "--json takes no value"},
      {{"status", "--json=0"}, "--json takes no value"},
      {{"type", "--no-lists=2", "y"}, "--no-lists takes no value"},
      {{"--version=3"}, "--version takes no value"},
      {{"type", "--from"}, "--from needs a value"},
      {{"explain"}, "an argument is missing: WORD"},
  };
  for (const auto& [arguments, answer] : calls) {
    SCOPED_TRACE(::testing::PrintToString(arguments));
    const auto run = runProgram(arguments);
    expectRefusal(run);
    EXPECT_EQ(run.err, "tessarok: " + answer + "\n");
  }
}

TEST(CommandLine, HelpNamesArgumentsByNothingButTheirName) {
  const std::vector<std::pair<Arguments, std::string>> calls = {
      {{"type"}, "TEXT"},       {{"explain"}, "WORD"}, {{"learned", "forget"}, "WORD"},
      {{"replay"}, "FILE"},     {{"report"}, "FILE"},  {{"check-data"}, "DIR"},
      {{"terminal"}, "COMMAND"}};
  for (auto [arguments, name] : calls) {
    SCOPED_TRACE(::testing::PrintToString(arguments));
    arguments.emplace_back("--help");
    const auto help = runProgram(arguments).out;
    EXPECT_NE(help.find("\n  " + name + " "), std::string::npos) << help;
    EXPECT_EQ(help.find(name + " TEXT"), std::string::npos) << help;
  }
}

TEST(CommandLine, HelpNamesKeysFilesAndVariables) {
  const auto help = runProgram({"--help"}).out;
  for (const auto* part :
       {"\nKeys:\n", "\nFiles:\n", "\nEnvironment:\n", "Alt+Space", "/settings.json",
        "/dictionary.txt", "XDG_CONFIG_HOME", "TESSAROK_RES", "TESSAROK_DEBUG_PATH"})
    EXPECT_NE(help.find(part), std::string::npos) << part;
  std::istringstream sections(help.substr(help.find("\nKeys:")));
  for (std::string line; std::getline(sections, line);)
    EXPECT_LE(line.size(), 100u) << line;
  // Those of a command are about that command.
  EXPECT_EQ(runProgram({"type", "--help"}).out.find("Environment:"), std::string::npos);
}

/// The command of a desktop, without one.
TEST(CommandLine, WithoutADisplayThereIsNoDesktop) {
  if (runProgram({"x11", "--help"}).status != 0) GTEST_SKIP() << "built without X11";
  const auto x11 = runProgram({"x11"}, {}, {{"DISPLAY", ""}});
  expectRefusal(x11);
  EXPECT_EQ(x11.err, "tessarok: there is no X11 display\n");
  const auto any = runProgram({}, {}, {{"DISPLAY", ""}});
  expectRefusal(any);
  EXPECT_EQ(any.err, "tessarok: there is no X11 display, and standard input is not a terminal\n");
}

TEST(CommandLine, ADisplayThatCannotBeReachedIsNamed) {
  if (runProgram({"x11", "--help"}).status != 0) GTEST_SKIP() << "built without X11";
  const std::string nowhere = ":64999";
  const auto x11 = runProgram({"x11"}, {}, {{"DISPLAY", nowhere}});
  EXPECT_EQ(x11.status, 2);
  EXPECT_NE(x11.err.find(nowhere), std::string::npos) << x11.err;
  // Without a command the terminal is tried next, and there is none.
  const auto any = runProgram({}, {}, {{"DISPLAY", nowhere}});
  EXPECT_EQ(any.status, 2);
  EXPECT_NE(any.err.find(nowhere), std::string::npos) << any.err;
}

/// At login nobody waits for a reason.
TEST(CommandLine, ASessionWithoutADisplayIsToldNothing) {
  if (runProgram({"x11", "--help"}).status != 0) GTEST_SKIP() << "built without X11";
  for (const std::string display : {"", ":64999"}) {
    SCOPED_TRACE(display);
    expectOutput(runProgram({"x11", "--autostart"}, {},
                            {{"DISPLAY", display}, {"WAYLAND_DISPLAY", ""}, {"XMODIFIERS", ""}}),
                 "");
  }
}

TEST(CommandLine, OutputThatCannotBeWrittenIsAFailure) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no device that is full";
  TemporaryDirectory folder;
  const auto errors = folder.path() / "errors";
  const auto command = std::string("LC_ALL=C '") + TESSAROK_PROGRAM +
                       "' --version > /dev/full 2> '" + errors.string() + "'";
  EXPECT_NE(std::system(command.c_str()), 0);
  EXPECT_EQ(testing::readFile(errors), "tessarok: standard output cannot be written\n");
}

TEST(CommandLine, FilesThatCannotBeReadAreRefused) {
  TemporaryDirectory directory;
  const auto missing = (directory.path() / "no.jsonl").string();
  const auto refused = runProgram({"replay", missing});
  expectRefusal(refused);
  EXPECT_NE(refused.err.find(missing), std::string::npos) << refused.err;
  expectRefusal(runProgram({"replay", directory.path()}));
  expectRefusal(runProgram({"replay", "--home", missing}));
  writeFile(directory.path() / "file", "");
  expectRefusal(runProgram({"replay", "--home", directory.path() / "file"}));
  expectRefusal(runProgram({"replay", directory.path() / "file" / "below"}));
  expectRefusal(runProgram({"check-data", missing}));
  expectRefusal(runProgram({"check-data", directory.path() / "file"}));
}

TEST(CommandLine, StandardInputThatCannotBeReadIsRefused) {
  // A directory can be opened, but not read.
  for (const Arguments& arguments :
       {Arguments{"type"}, Arguments{"explain", "-"}, Arguments{"replay"}}) {
    SCOPED_TRACE(arguments.front());
    auto all = arguments;
    all.insert(all.begin(), {"--resources", kData});
    const auto run = runProgramReading("/", all);
    expectRefusal(run);
    EXPECT_EQ(run.err, "tessarok: cannot read standard input\n");
  }
}

TEST(CommandLine, TextThatIsNotUtf8IsRefused) {
  expectRefusal(type({"abc\xff"}));
  expectRefusal(type({}, "abc\xff\n"));
  expectRefusal(runProgram({"--resources", kData, "explain", "abc\xff"}));
  expectRefusal(runProgram({"--resources", kData, "explain", "good", "abc\xff"}));
  expectRefusal(runProgram({"--resources", kData, "explain", "-"}, "good\nabc\xff\n"));
}

TEST(CommandLine, AReplayThatIsNotUtf8IsRefused) {
  const auto run = runProgram({"replay"}, "{\"keys\": \"\xff\"}\n");
  expectRefusal(run);
  EXPECT_TRUE(run.err.starts_with("replay: line 1: ")) << run.err;
}

TEST(CommandLine, WrongReplayLinesAreNamed) {
  for (const std::string_view line : {"{",
                                      "[]",
                                      "{}",
                                      "1",
                                      R"({"keys": "a", "wait": 1})",
                                      R"({"keys": "a", "keys": "a"})",
                                      R"({"down": {"code": 1, "code": 1}})",
                                      R"({"file": {"a.txt": "", "b.txt": "", "a.txt": ""}})",
                                      R"({"keys": 1})",
                                      R"({"keys": "я"})",
                                      R"({"no": 1})",
                                      R"({"print": ["no"]})",
                                      R"({"wait": -1})",
                                      R"({"wait": 1e300})",
                                      R"({"wait": 100000001})",
                                      R"({"wait": "1"})",
                                      R"({"down": {}})",
                                      R"({"down": {"code": 1.5}})",
                                      R"({"down": {"code": 1, "no": 1}})",
                                      R"({"down": {"code": 1, "mods": ["no"]}})",
                                      R"({"select": "no"})",
                                      R"({"enable": []})",
                                      R"({"tap": "no"})",
                                      R"({"fail": "no"})",
                                      R"({"menu": "no"})",
                                      R"({"click": "no"})",
                                      R"({"file": {"../x": ""}})",
                                      R"({"file": {"x": 1}})",
                                      R"({"quit": false})",
                                      R"({"setup": {}})",
                                      R"({"keyboard": {"type": -1}})",
                                      R"({"secure": 1})"}) {
    SCOPED_TRACE(line);
    const auto run = runProgram(
        {"--resources", kData, "replay"},
        "# a comment\n{\"keys\": \"a\"}\n\n" + std::string(line) + "\n{\"print\": [\"text\"]}\n");
    expectRefusal(run);
    EXPECT_TRUE(run.err.starts_with("replay: line 4: ")) << run.err;
  }
}

TEST(CommandLine, AReplayMayHaveTheLineEndsOfWindows) {
  expectOutput(runProgram({"--resources", kData, "replay"},
                          "# a comment\r\n{\"keys\": \"ab\"}\r\n\r\n{\"print\": [\"text\"]}\r\n"),
               "{\"text\":\"ab\"}\n");
  expectRefusal(runProgram({"--resources", kData, "replay"}, " \r\n"));
}

TEST(CommandLine, AKeyMayBeThereAgainInAnotherObject) {
  expectOutput(runProgram({"--resources", kData, "replay"},
                          R"({"setup": {"files": {"setup": "", "files": ""}}})"),
               "");
}

TEST(CommandLine, WhatAReplayPrintedBeforeAWrongLineStands) {
  const auto run = runProgram({"--resources", kData, "replay"},
                              "{\"keys\": \"ab\"}\n{\"print\": [\"text\"]}\nwrong\n");
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out, "{\"text\":\"ab\"}\n");
  EXPECT_EQ(run.err.find("replay: line 3: "), 0u) << run.err;
}

TEST(CommandLine, MissingDataIsRefused) {
  TemporaryDirectory empty;
  for (const auto* command : {"type", "explain"}) {
    SCOPED_TRACE(command);
    expectRefusal(runProgram({"--resources", empty.path(), command, "ghbdtn"}));
    expectRefusal(runProgram({"--resources", empty.path() / "no", command, "ghbdtn"}));
  }
}

TEST(CommandLine, TypesWhatWouldBeOnTheScreen) {
  // Once the first word has selected the Russian layout, the same keys type Russian letters.
  expectOutput(type({"ghbdtn? rfr ltkf"}), "привет? как дела\n");
  expectOutput(type({"ghbdtn"}), "ghbdtn\n");
  expectOutput(type({"ghbdtn? rfr ltkf "}), "привет? как дела \n");
  expectOutput(type({"руддщ цщкдв "}), "hello world \n");
  expectOutput(type({"hello world "}), "hello world \n");
  expectOutput(type({"ПРивет "}), "Привет \n");
}

TEST(CommandLine, JoinsTheWordsOfItsArguments) {
  expectOutput(type({"ghbdtn", "vbh", "z"}), "привет мир я\n");
}

TEST(CommandLine, AWordMayBeginWithAHyphen) {
  expectOutput(type({"-ghbdtn", "vbh"}), "-привет мир\n");
  expectOutput(type({"--from", "en", "z", "-z", "-"}), "z -z -\n");
  expectOutput(type({"--", "-ghbdtn", "z"}), "-привет я\n");
  expectOutput(type({"--no-lists", "--from=en", "-ghbdtn", "--from"}), "-привет --акщь\n");
  EXPECT_EQ(explain({"-ghbdtn"}).at(0)["word"], "-ghbdtn");
}

TEST(CommandLine, APauseEndsWhileTextIsTyped) {
  // The grave accent stands for five seconds, in which 25 keys are typed.
  const std::string paused(24, 'z');
  expectOutput(type({"`ghbdtn " + paused + " ghbdtn "}), "`ghbdtn " + paused + " привет \n");
}

TEST(CommandLine, TypesStandardInput) {
  expectOutput(type({}, "ghbdtn\nhello\n"), "привет\nhello\n");
  expectOutput(type({}, ""), "\n");
  expectOutput(type({}, "руддщ 👍 ok\n"), "hello 👍 ok\n");
}

TEST(CommandLine, StartsOnTheNamedLayout) {
  // Latin letters cannot be typed on the Russian layout: the keys stay the same.
  const auto run = type({"--from", "ru"}, "ghbdtn");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "привет\n");
  expectOutput(type({"--from", "en"}, "ghbdtn "), "привет \n");
}

TEST(CommandLine, ExplainsADecision) {
  const auto lines = explain({"ghbdtn,"});
  ASSERT_EQ(lines.size(), 1u);
  const auto& line = lines.front();
  EXPECT_EQ(line["word"], "ghbdtn,");
  EXPECT_EQ(line["decision"], (json{{"fromRu", false}, {"confidence", "high"}, {"trim", 1}}));
  EXPECT_EQ(line["converted"], "привет,");
  EXPECT_EQ(line["shiftLag"], nullptr);
  EXPECT_EQ(line["shortRuCandidate"], false);
  EXPECT_EQ(line["shortEnCandidate"], false);
  EXPECT_TRUE(line["steps"].is_array());
  EXPECT_FALSE(line["steps"].empty());
}

TEST(CommandLine, ExplainsWhatIsLeftAlone) {
  const auto lines = explain({"hello", "yf", "ПРивет"});
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0]["decision"], nullptr);
  EXPECT_EQ(lines[0]["converted"], nullptr);
  EXPECT_EQ(lines[1]["shortRuCandidate"], true);
  EXPECT_EQ(lines[2]["shiftLag"], "Привет");
}

TEST(CommandLine, ExplainsTheWordsOfStandardInput) {
  const auto lines = explain({"-"}, "ghbdtn\r\nhello\nруддщ");
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0]["word"], "ghbdtn");
  EXPECT_EQ(lines[1]["word"], "hello");
  EXPECT_EQ(lines[2]["converted"], "hello");
}

TEST(CommandLine, StreaksCountInAnExplanation) {
  EXPECT_EQ(explain({"vs"})[0]["decision"], nullptr);
  EXPECT_EQ(explain({"--ru-streak", "1", "vs"})[0]["converted"], "мы");
  EXPECT_EQ(explain({"--en-streak", "1", "vs"})[0]["decision"], nullptr);
}

TEST(CommandLine, ExplanationsKnowTheListsOfThePerson) {
  TemporaryDirectory home;
  writeFile(home.path() / ".local/share/Tessarok/dictionary.txt", "ghbdtn\n");
  const auto run = [&](Arguments arguments) {
    arguments.insert(arguments.begin(), {"--resources", kData, "explain", "--json"});
    const auto ran = runProgram(arguments, {}, {{"HOME", home.path()}, {"XDG_DATA_HOME", ""}});
    EXPECT_EQ(ran.status, 0) << ran.err;
    return json::parse(ran.out);
  };
  EXPECT_EQ(run({"ghbdtn"})["decision"], nullptr);
  EXPECT_EQ(run({"--no-lists", "ghbdtn"})["converted"], "привет");
}

TEST(CommandLine, TypingAndExplainingKnowTheSameLists) {
  TemporaryDirectory home;
  const auto folder = home.path() / ".local/share/Tessarok";
  const std::vector<std::pair<std::string, std::string>> environment = {
      {"HOME", home.path()}, {"XDG_DATA_HOME", ""}, {"XDG_CONFIG_HOME", ""}};
  const auto typed = [&](Arguments arguments) {
    arguments.insert(arguments.begin(), {"--resources", kData, "type"});
    const auto ran = runProgram(arguments, {}, environment);
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_EQ(ran.err, "");
    return ran.out;
  };
  const auto explained = [&](Arguments arguments) {
    arguments.insert(arguments.begin(), {"--resources", kData, "explain", "--json"});
    const auto ran = runProgram(arguments, {}, environment);
    EXPECT_EQ(ran.status, 0) << ran.err;
    return !json::parse(ran.out)["decision"].is_null();
  };
  const auto bothFix = [&](const Arguments& arguments, const std::string& word) {
    auto withWord = arguments;
    withWord.push_back(word);
    const bool isExplained = explained(withWord);
    withWord.back() = word + " ";
    EXPECT_EQ(typed(withWord) != word + " \n", isExplained) << word;
    return isExplained;
  };
  EXPECT_TRUE(bothFix({}, "ghbdtn"));
  EXPECT_FALSE(fs::exists(folder));
  for (const auto& [file, text] :
       {std::pair("dictionary.txt", "ghbdtn\n"), std::pair("ignored.txt", "GHBDTN\n"),
        std::pair("rejects.txt", "ghbdtn\t3\n")}) {
    SCOPED_TRACE(file);
    writeFile(folder / file, text);
    EXPECT_FALSE(bothFix({}, "ghbdtn"));
    EXPECT_TRUE(bothFix({"--no-lists"}, "ghbdtn"));
    // Neither has touched the person's own files.
    EXPECT_EQ(testing::readFile(folder / file), text);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);
    fs::remove(folder / file);
  }
  // Words of a pack, and its switch.
  const auto pack = testing::readFile(fs::path(kData) / "pack_it.txt");
  EXPECT_FALSE(pack.empty());
  writeFile(home.path() / ".config/Tessarok/settings.json", "{\"pack.it\": false}");
  EXPECT_TRUE(bothFix({}, "ghbdtn"));
}

TEST(CommandLine, WhatWasLearnedIsListedAndTakenBack) {
  const TemporaryDirectory home;
  const auto folder = home.path() / ".local" / "share" / "Tessarok";
  const auto run = [&](Arguments arguments) {
    return runProgram(arguments, {},
                      {{"HOME", home.path()}, {"XDG_DATA_HOME", ""}, {"XDG_CONFIG_HOME", ""}});
  };
  expectOutput(run({"learned"}), "nothing has been learned yet\n");
  expectOutput(run({"learned", "--json"}), "");
  writeFile(folder / "ignored.txt", "ghbdtn\nvjcrdf\n");
  writeFile(folder / "rejects.txt", "ckjdj\t1\ndjn\t2\n");
  expectOutput(run({"learned"}),
               "ckjdj: its correction was rejected once; left alone until the program that saw it "
               "ends, and for ever after two more\n"
               "djn: its correction was rejected twice; left alone until the program that saw it "
               "ends, and for ever after one more\n"
               "ghbdtn: never corrected: it stands on the list (ignored.txt)\n"
               "vjcrdf: never corrected: it stands on the list (ignored.txt)\n");
  const auto lines = run({"learned", "--json"}).out;
  EXPECT_EQ(json::parse(lines.substr(0, lines.find('\n'))),
            json::parse(R"({"word": "ckjdj", "list": false, "rejections": 1})"));
  expectOutput(run({"learned", "forget", "Ghbdtn", "djn"}), "");
  EXPECT_EQ(testing::readFile(folder / "ignored.txt"), "vjcrdf\n");
  EXPECT_EQ(testing::readFile(folder / "rejects.txt"), "ckjdj\t1\n");
  const auto unknown = run({"learned", "forget", "xyz", "ckjdj"});
  EXPECT_EQ(unknown.status, 1);
  EXPECT_EQ(unknown.err, "tessarok: xyz has not been learned\n");
  EXPECT_EQ(testing::readFile(folder / "rejects.txt"), "\n");
}

/// The person's home, in a session of whatever kind that has no bus and no display.
class PersonsHome : public ::testing::Test {
 protected:
  ProgramRun run(const Arguments& arguments,
                 const std::vector<std::pair<std::string, std::string>>& more = {}) {
    std::vector<std::pair<std::string, std::string>> environment = {
        {"HOME", home_.path()},
        {"XDG_DATA_HOME", ""},
        {"XDG_CONFIG_HOME", ""},
        {"XDG_CURRENT_DESKTOP", ""},
        {"XDG_SESSION_TYPE", ""},
        {"XDG_DATA_DIRS", home_.path() / "share"},
        {"DISPLAY", ""},
        {"WAYLAND_DISPLAY", ""},
        {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"}};
    environment.insert(environment.end(), more.begin(), more.end());
    Arguments all{"--resources", kData};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return runProgram(all, {}, environment);
  }
  /// What `status --json` says does not work.
  std::vector<std::string> obstacles(
      const std::vector<std::pair<std::string, std::string>>& more = {}) {
    return json::parse(run({"status", "--json"}, more).out)["obstacles"];
  }
  bool isObstacle(const std::string& sentence) {
    const auto all = obstacles();
    return std::find(all.begin(), all.end(), sentence) != all.end();
  }
  [[nodiscard]] fs::path settings() const {
    return home_.path() / ".config/Tessarok/settings.json";
  }
  [[nodiscard]] fs::path list(const char* name) const {
    return home_.path() / ".local/share/Tessarok" / name;
  }

  TemporaryDirectory home_;
};

TEST_F(PersonsHome, StatusNamesSettingsThatAreNotUsed) {
  writeFile(settings(), "{\n\"pack.it\": yes\n}\n");
  const auto start = "the settings " + settings().string() + " are not used: ";
  EXPECT_TRUE(isObstacle(start + "line 2 is not valid JSON"));
  EXPECT_NE(run({"status"}).out.find(start + "line 2 is not valid JSON\n"), std::string::npos);
  writeFile(settings(), "{\"pack.it\": 1}");
  EXPECT_TRUE(isObstacle(start + "\"pack.it\" is neither true nor false"));
  writeFile(settings(), "{\"layoutKey\": \"control\"}");
  EXPECT_TRUE(
      isObstacle("the setting \"layoutKey\" is \"control\", which is none of "
                 "\"control-space\", \"none\""));
}

TEST_F(PersonsHome, StatusNamesListsThatAreNotUsed) {
  for (const auto* name : {"dictionary.txt", "ignored.txt", "rejects.txt"}) {
    writeFile(list(name), "ghbdtn\n\xff\n");
    EXPECT_TRUE(
        isObstacle("no word of " + list(name).string() + " counts: line 2 is not valid UTF-8"))
        << name;
    // Once is enough.
    EXPECT_EQ(run({"status"}).err, "") << name;
  }
}

TEST_F(PersonsHome, WhatWasLearnedNamesListsThatAreNotUsed) {
  writeFile(list("ignored.txt"), "ghbdtn\n");
  writeFile(list("rejects.txt"), "vbh\t1\n\xff\n");
  const auto run = this->run({"learned", "--json"});
  EXPECT_EQ(run.err, "tessarok: no word of " + list("rejects.txt").string() +
                         " counts: line 2 is not valid UTF-8\n");
  EXPECT_NE(run.out.find("\"ghbdtn\""), std::string::npos) << run.out;
}

TEST_F(PersonsHome, StatusNamesWordDataThatIsBroken) {
  const auto data = home_.path() / "data";
  fs::copy(kData, data);
  writeFile(data / "freq_short_ru.txt", "слово\n");
  const auto run = runProgram({"--resources", data, "status"}, {}, {{"HOME", home_.path()}});
  EXPECT_NE(run.out.find("the word data " + (data / "freq_short_ru.txt").string() +
                         " is missing or broken"),
            std::string::npos)
      << run.out;
}

TEST_F(PersonsHome, TypingAndExplainingNameAListThatIsNotUsed) {
  for (const auto* name : {"dictionary.txt", "ignored.txt"}) {
    writeFile(list(name), "ghbdtn\n\xff\n");
    for (const auto* command : {"type", "explain"}) {
      EXPECT_EQ(run({command, "ghbdtn"}).err, "tessarok: no word of " + list(name).string() +
                                                  " counts: line 2 is not valid UTF-8\n");
      EXPECT_EQ(run({command, "--no-lists", "ghbdtn"}).err, "");
    }
    fs::remove(list(name));
  }
}

TEST_F(PersonsHome, AReportSaysWhyADictionaryIsNotUsed) {
  writeFile(list("dictionary.txt"), "ghbdtn\n\xff\n");
  const auto report = run({"report", "-"}).out;
  EXPECT_NE(report.find("own dictionary: line 2 is not valid UTF-8\n"), std::string::npos)
      << report;
}

TEST_F(PersonsHome, AReportSaysThatSettingsAreNotUsedAndNotWhatIsInThem) {
  writeFile(settings(), "{\"privatename\": 1}");
  const auto report = run({"report", "-"}).out;
  EXPECT_NE(report.find("file: cannot be used"), std::string::npos) << report;
  EXPECT_EQ(report.find("privatename"), std::string::npos) << report;
  writeFile(settings(), "{}");
  EXPECT_EQ(run({"report", "-"}).out.find("cannot be used"), std::string::npos);
}

TEST_F(PersonsHome, AReportTellsHowManyProgramsAreNamed) {
  writeFile(settings(), "{\"fullScreen\": [\"vim\", \"privateprogram\"]}");
  const auto report = run({"report", "-"}).out;
  EXPECT_NE(report.find("fullScreen: 2 programs\n"), std::string::npos) << report;
  EXPECT_EQ(report.find("privateprogram"), std::string::npos) << report;
}

TEST_F(PersonsHome, StatusNamesThePackageThatAWaylandSessionLacks) {
  const auto bin = home_.path() / "bin";
  for (const auto* name : {"fcitx5", "ibus-daemon"}) {
    writeFile(bin / name, "");
    fs::permissions(bin / name, fs::perms::owner_all);
  }
  const auto first = [&](const char* desktop, const std::string& path) {
    return obstacles(
               {{"WAYLAND_DISPLAY", "wayland-0"}, {"XDG_CURRENT_DESKTOP", desktop}, {"PATH", path}})
        .front();
  };
  const auto names = [](const std::string& sentence, const char* part) {
    return sentence.find(part) != std::string::npos;
  };
  EXPECT_TRUE(names(first("KDE", bin), "install the package tessarok-fcitx5"));
  EXPECT_TRUE(names(first("sway", bin), "install the package tessarok-fcitx5"));
  EXPECT_TRUE(names(first("GNOME", bin),
                    "install the packages tessarok-ibus and "
                    "gnome-shell-extension-tessarok"));
  writeFile(home_.path() / "share/fcitx5/addon/tessarok.conf", "");
  writeFile(home_.path() / "share/ibus/component/tessarok.xml", "");
  for (const auto* desktop : {"KDE", "sway", "GNOME"}) {
    EXPECT_FALSE(names(first(desktop, bin), "install")) << first(desktop, bin);
    EXPECT_TRUE(names(first(desktop, "/nowhere"), "install")) << first(desktop, "/nowhere");
  }
  // A folder is no program.
  fs::create_directories(home_.path() / "folders/fcitx5");
  EXPECT_TRUE(names(first("KDE", home_.path() / "folders"), "install"));
}

TEST_F(PersonsHome, StatusLooksForTheExtensionInThePersonsFolderToo) {
  writeFile(home_.path() / "bin/ibus-daemon", "");
  fs::permissions(home_.path() / "bin/ibus-daemon", fs::perms::owner_all);
  writeFile(home_.path() / "share/ibus/component/tessarok.xml", "");
  const auto all = [this] {
    return obstacles({{"WAYLAND_DISPLAY", "wayland-0"},
                      {"XDG_CURRENT_DESKTOP", "GNOME"},
                      {"PATH", home_.path() / "bin"}});
  };
  EXPECT_EQ(all().size(), 2U);
  writeFile(home_.path() / ".local/share/gnome-shell/extensions/tessarok@app.tessarok/x", "");
  EXPECT_EQ(all().size(), 1U);
}

TEST_F(PersonsHome, ACopyThatCannotBeReachedIsToldOf) {
  if (run({"x11", "--help"}).status != 0) GTEST_SKIP() << "built without X11";
  EXPECT_EQ(run({"off"}).err,
            "tessarok: neither a corrected terminal nor a running desktop answers\n");
  writeFile(list("instance.lock"), "");
  const int file = ::open(list("instance.lock").c_str(), O_RDWR | O_CLOEXEC);
  struct flock lock {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  ASSERT_EQ(::fcntl(file, F_SETLK, &lock), 0);
  const auto said = "a copy runs (process " + std::to_string(::getpid()) +
                    "), but cannot be reached without a session bus";
  for (const auto* command : {"on", "off", "quit"}) {
    EXPECT_EQ(run({command}).err, "tessarok: " + said + "\n");
  }
  EXPECT_TRUE(isObstacle(said));
  ::close(file);
}

TEST(CommandLine, HelpSaysWhichListsCount) {
  for (const auto* command : {"type", "explain"}) {
    const auto run = runProgram({command, "--help"});
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("--no-lists"), std::string::npos) << run.out;
  }
}

TEST(CommandLine, AByteOrderMarkInTheDataIsNamed) {
  TemporaryDirectory data;
  fs::copy(kData, data.path());
  for (const auto* name : {"proto_en2.txt", "freq_short_ru.txt", "pack_chat.txt", "dict_en.txt"}) {
    const auto text = testing::readFile(data.path() / name);
    writeFile(data.path() / name, "\uFEFF" + text);
  }
  const auto run = runProgram({"check-data", data.path()});
  EXPECT_EQ(run.status, 2);
  for (const auto* name : {"proto_en2.txt", "freq_short_ru.txt", "pack_chat.txt", "dict_en.txt"}) {
    const auto line =
        (data.path() / name).string() + ":1: the file begins with a byte-order mark\n";
    EXPECT_NE(run.err.find(line), std::string::npos) << run.err;
  }
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 4) << run.err;
}

TEST(CommandLine, GoodDataIsCalledGood) {
  const auto run = runProgram({"check-data", kData});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(std::count(run.out.begin(), run.out.end(), '\n'), 13);
}

TEST(CommandLine, BadDataIsNamedByFileAndLine) {
  TemporaryDirectory data;
  fs::copy(kData, data.path());
  writeFile(data.path() / "dict_en.txt", "apple\nbear\nart\n");
  writeFile(data.path() / "freq_short_ru.txt", "на\n\nслово\n");
  writeFile(data.path() / "pack_it.txt", "git\n\xff\n");
  fs::remove(data.path() / "proto_ru2.txt");
  const auto run = runProgram({"check-data", data.path()});
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.err.find((data.path() / "dict_en.txt").string() + ":3: "), std::string::npos);
  EXPECT_NE(run.err.find((data.path() / "freq_short_ru.txt").string() + ":3: "), std::string::npos);
  EXPECT_NE(run.err.find((data.path() / "pack_it.txt").string() + ":2: "), std::string::npos);
  EXPECT_NE(run.err.find("proto_ru2.txt: "), std::string::npos);
  EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 4) << run.err;
}

}  // namespace
}  // namespace tessarok

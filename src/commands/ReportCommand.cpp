#include "commands/ReportCommand.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
#include <sys/utsname.h>
#include <vector>

#include "commands/CommandError.h"
#include "commands/DecisionCounts.h"
#include "commands/DesktopControl.h"
#include "commands/JoinedText.h"
#include "commands/PersonsFiles.h"
#include "commands/SettingChoices.h"
#include "commands/TerminalControl.h"
#include "desktops/posix/EnglishMessages.h"
#include "desktops/posix/NewFile.h"
#include "desktops/posix/PersonsEnvironment.h"
#include "desktops/posix/PosixFiles.h"
#include "desktops/posix/SettingsFile.h"
#include "desktops/posix/Translation.h"
#include "desktops/terminal/TerminalDesktop.h"
#include "platform/Desktop.h"
#include "words/BuiltinPacks.h"
#include "words/Dict.h"
#include "words/ResourceLocator.h"
#include "words/UserDict.h"
#include "words/WordList.h"

namespace tessarok::commands {

namespace {

using posix::personsVariable;
using posix::translated;

constexpr const char* kUsualFile = "tessarok-report.txt";

/// One value for programs: no line of it may look like another entry.
std::string oneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](unsigned char byte) { return byte < ' '; }, ' ');
  return text;
}

class Report {
 public:
  void section(std::string_view title) { text_ << '\n' << title << ":\n"; }
  template <typename Value>
  void entry(std::string_view name, const Value& value) {
    std::ostringstream spelled;
    spelled << value;
    text_ << "  " << name << ": " << oneLine(spelled.str()) << '\n';
  }
  [[nodiscard]] std::string text() const { return "Tessarok report\n" + text_.str(); }

 private:
  std::ostringstream text_;
};

/// The name that a distribution gives itself; empty where there is none.
std::string distribution() {
  std::ifstream file("/etc/os-release");
  constexpr std::string_view kName = "PRETTY_NAME=";
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with(kName)) continue;
    line.erase(0, kName.size());
    std::erase(line, '"');
    return line;
  }
  return {};
}

void addSystem(Report& report) {
  report.section("versions");
  report.entry("tessarok", TESSAROK_VERSION);
  // Not the name of the machine.
  utsname system{};
  if (::uname(&system) == 0) {
    report.entry("system",
                 std::string(system.sysname) + " " + system.release + " " + system.machine);
  }
  if (const auto name = distribution(); !name.empty()) report.entry("distribution", name);
}

void addSession(Report& report) {
  report.section("session");
  for (const auto* name :
       {"XDG_SESSION_TYPE", "XDG_CURRENT_DESKTOP", "TERM", "LC_ALL", "LC_CTYPE", "LC_MESSAGES",
        "LANG", "LANGUAGE", "GTK_IM_MODULE", "QT_IM_MODULE", "XMODIFIERS"}) {
    if (const auto value = personsVariable(name)) report.entry(name, *value);
  }
  // What these hold names a machine, a folder or a person.
  for (const auto* name : {"DISPLAY", "WAYLAND_DISPLAY", "SSH_TTY", "TESSAROK_TERMINAL",
                           "TESSAROK_RES", "TESSAROK_DEBUG", "XDG_DATA_HOME", "XDG_CONFIG_HOME"}) {
    report.entry(name, personsVariable(name).value_or("").empty() ? "not set" : "set");
  }
}

void addCorrection(Report& report) {
  report.section("correction");
  if (const auto desktop = askDesktop()) {
    report.entry("desktop", desktop->desktop + " " + desktop->version);
    report.entry("state", desktop->correction);
    report.entry("layout", desktop->layout);
    report.entry("layouts", joined(desktop->layouts, ", "));
    for (const auto& obstacle : desktop->obstacles)
      report.entry("obstacle", obstacle);
  } else {
    report.entry("desktop", "none answers");
  }
  if (const auto terminal = askTerminal("status")) {
    report.entry("terminal", terminal->isOn ? "on" : "off");
    report.entry("terminal's layout", terminal->layout == Language::russian ? "ru" : "en");
  } else {
    report.entry("terminal", "not corrected");
  }
}

/// Anything else that a file holds than what the setting may be is not told.
std::string valueOf(const SettingChoice& choice, const std::optional<std::string>& value) {
  if (!value) return "not set";
  return isKnown(choice, *value) ? *value : "an unknown value";
}

std::string valueOf(const std::optional<bool>& value) {
  if (!value) return "not set";
  return *value ? "true" : "false";
}

void addSettings(Report& report, posix::SettingsFile& settings) {
  report.section("settings");
  // The reason may hold a name that the person made up.
  if (settings.problem()) report.entry("file", "cannot be used; tessarok status says why");
  for (const auto& choice : settingChoices())
    report.entry(choice.key, valueOf(choice, settings.string(choice.key)));
  // Their number alone: the names of programs are the person's.
  report.entry("fullScreen", std::to_string(settings.strings("fullScreen").size()) + " programs");
  report.entry("shiftLagFix", valueOf(settings.boolean("shiftLagFix")));
  report.entry("welcomed", valueOf(settings.boolean("welcomed")));
  for (const auto& pack : BuiltinPacks::all()) {
    const auto key = BuiltinPacks::defaultsKey(pack);
    report.entry(key, valueOf(settings.boolean(key)));
  }
}

/// How many words a list of the person's holds, or why that cannot be told.
std::string sizeOf(platform::Files& files, const std::filesystem::path& file) {
  if (!files.exists(file)) return "no file";
  if (auto fault = faultOfList(files, file)) return *fault;
  const auto text = files.read(file);
  return text ? std::to_string(WordList::parse(*text).size()) : "cannot be read";
}

/// Only where there is something to tell.
void addFault(Report& report, platform::Files& files, const char* name) {
  if (const auto fault = faultOfList(files, UserDict::directory() / name)) {
    report.entry(name, *fault);
  }
}

void addWords(Report& report, platform::Files& files) {
  report.section("words");
  report.entry("English dictionary", Dict::en().isAvailable() ? "there" : "missing");
  report.entry("Russian dictionary", Dict::ru().isAvailable() ? "there" : "missing");
  report.entry("own dictionary", sizeOf(files, UserDict::fileURL()));
  addFault(report, files, kIgnoredName);
  addFault(report, files, kRejectsName);
  const auto learned = learnedLists(files);
  report.entry("never corrected", learned.words().size());
  std::size_t once = 0;
  std::size_t twice = 0;
  for (const auto& [word, rejections] : learned.counts()) {
    once += rejections == 1 ? 1 : 0;
    twice += rejections == 2 ? 1 : 0;
  }
  report.entry("taken back once", once);
  report.entry("taken back twice", twice);
}

std::filesystem::path logFile(platform::Files& files) {
  const auto named = personsVariable("TESSAROK_DEBUG_PATH");
  return named ? std::filesystem::path(*named) : files.homeDirectory() / "tessarok.log";
}

bool hasLog() {
  const auto files = posix::PosixFiles::ofUser();
  return files->exists(logFile(*files));
}

void addDecisions(Report& report, platform::Files& files) {
  report.section("decisions");
  const auto log = logFile(files);
  if (!files.exists(log)) {
    return report.entry("log",
                        "none; started with TESSAROK_DEBUG=1 in its environment the program writes "
                        "one, and what it decides from then on is counted here");
  }
  std::string error;
  const auto text = files.read(log, &error);
  if (!text) return report.entry("log", error);
  const auto counts = decisionCounts(*text);
  report.entry("log", counts.empty() ? "empty" : "there");
  for (const auto& [kind, count] : counts)
    report.entry(kind, count);
}

/// For those who mend the program, whatever language its person reads.
std::string makeReport(const Options& options) {
  const posix::EnglishMessages english;
  Report report;
  addSystem(report);
  addSession(report);
  addCorrection(report);
  terminal::TerminalDesktop desktop(options.resources);
  platform::setDesktop(desktop);
  auto& files = desktop.files();
  posix::SettingsFile settings(posix::SettingsFile::locationFor(files.homeDirectory()), files,
                               desktop.systemLog());
  addSettings(report, settings);
  addWords(report, files);
  addDecisions(report, files);
  return report.text();
}

}  // namespace

int runReport(const Options& options, const std::optional<std::filesystem::path>& file) {
  const auto text = makeReport(options);
  if (file && *file == "-") {
    std::cout << text;
    return 0;
  }
  const auto target = file.value_or(kUsualFile);
  if (const auto failure = posix::writeNewFile(target, text)) {
    throw CommandError(translated("cannot write {1}: {2}", {target.string(), failure.reason()}));
  }
  std::cout
      << translated(
             "{1} holds versions, layouts, settings, and numbers of words and of decisions; no "
             "text that was typed and no word of a list. Read it before you send it.",
             {target.string()})
      << '\n';
  if (!hasLog()) {
    std::cout << translated(
                     "No decision is counted in it, because there is no log: start Tessarok with "
                     "TESSAROK_DEBUG=1 in its environment, type what goes wrong, and report again.")
              << '\n';
  }
  return 0;
}

}  // namespace tessarok::commands

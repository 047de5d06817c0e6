#include "commands/StatusCommand.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "commands/ControlCommand.h"
#include "commands/DesktopControl.h"
#include "commands/JoinedText.h"
#include "commands/PersonsFiles.h"
#include "commands/TerminalControl.h"
#include "commands/WordData.h"
#include "desktops/posix/EnglishMessages.h"
#include "desktops/posix/SettingsFile.h"
#include "desktops/posix/Translation.h"
#include "desktops/terminal/TerminalDesktop.h"
#include "platform/Desktop.h"
#include "words/ResourceLocator.h"
#include "words/UserDict.h"

namespace tessarok::commands {

namespace {

using posix::translatable;
using posix::translated;

constexpr int kNothingRuns = 1;

/// Everything that is told.
struct Report {
  std::optional<DesktopStatus> desktop;
  std::optional<TerminalStatus> terminal;
  /// What does not work besides what the desktop tells itself, a sentence each, in the language of
  /// whoever reads it.
  std::vector<std::string> obstacles;
  /// Words that are never corrected because of what the person took back.
  std::size_t learned = 0;
  /// Words whose correction was taken back once or twice.
  std::size_t rejected = 0;
  /// What each file is for, and where it is.
  std::vector<std::pair<std::string, std::filesystem::path>> files;
};

/// How the correction of a desktop may stand, in the words that it tells it with.
[[maybe_unused]] constexpr const char* kCorrections[] = {
    translatable("on"), translatable("off"), translatable("paused"), translatable("by hand"),
    translatable("waiting")};

/// What files are for.
[[maybe_unused]] constexpr const char* kUses[] = {
    translatable("settings"), translatable("dictionary"), translatable("learned"),
    translatable("rejections"), translatable("word data")};

std::vector<std::string> obstacles(const Report& report) {
  std::vector<std::string> all;
  if (!report.desktop && !report.terminal) all = obstaclesToDesktop();
  if (report.desktop && report.desktop->version != TESSAROK_VERSION) {
    all.push_back(
        translated("version \"{1}\" runs, and this is another one: it "
                   "is used from the next start on",
                   {report.desktop->version}));
  }
  return all;
}

/// What does not work wherever the program corrects.
void addProblemsWithFiles(Report& report, platform::Files& files) {
  const auto data = checkWordData();
  const auto faulty =
      std::find_if(data.begin(), data.end(), [](const auto& file) { return file.fault; });
  if (faulty != data.end()) {
    report.obstacles.push_back(
        translated("the word data {1} is missing or broken; tessarok check-data says what is wrong",
                   {faulty->file}));
  }
  for (auto& problem : problemsWithFiles(files))
    report.obstacles.push_back(std::move(problem));
}

void addFiles(Report& report, const std::filesystem::path& home) {
  const auto folder = UserDict::directory();
  report.files = {{"settings", posix::SettingsFile::locationFor(home)},
                  {"dictionary", UserDict::fileURL()},
                  {"learned", folder / kIgnoredName},
                  {"rejections", folder / kRejectsName}};
  if (const auto data = ResourceLocator::find("dict_ru")) {
    report.files.emplace_back("word data", data->parent_path());
  }
}

Report makeReport(const Options& options) {
  Report report;
  report.desktop = askDesktop();
  report.terminal = askTerminal("status");
  report.obstacles = obstacles(report);
  terminal::TerminalDesktop desktop(options.resources);
  platform::setDesktop(desktop);
  addProblemsWithFiles(report, desktop.files());
  const auto learned = learnedLists(desktop.files());
  report.learned = learned.words().size();
  for (const auto& [word, rejections] : learned.counts())
    report.rejected += learned.words().contains(word) ? 0 : 1;
  addFiles(report, desktop.files().homeDirectory());
  return report;
}

std::string timeOf(std::int64_t seconds) {
  const auto time = static_cast<std::time_t>(seconds);
  std::tm local{};
  std::array<char, 32> text{};
  ::localtime_r(&time, &local);
  std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &local);
  return text.data();
}

const char* codeOf(Language language) {
  return language == Language::russian ? "ru" : "en";
}

nlohmann::json jsonOf(const DesktopStatus& desktop) {
  return {{"desktop", desktop.desktop},       {"version", desktop.version},
          {"process", desktop.process},       {"since", desktop.since},
          {"correction", desktop.correction}, {"enabled", desktop.isEnabled},
          {"layout", desktop.layout},         {"layouts", desktop.layouts},
          {"obstacles", desktop.obstacles}};
}

nlohmann::json jsonOf(const Report& report) {
  nlohmann::json json{{"version", TESSAROK_VERSION},
                      {"desktop", nullptr},
                      {"terminal", nullptr},
                      {"obstacles", report.obstacles},
                      {"learned", report.learned},
                      {"rejected", report.rejected},
                      {"files", nlohmann::json::object()}};
  if (report.desktop) json["desktop"] = jsonOf(*report.desktop);
  if (report.terminal) {
    json["terminal"] = {{"correction", report.terminal->isOn ? "on" : "off"},
                        {"layout", codeOf(report.terminal->layout)}};
  }
  for (const auto& [use, file] : report.files)
    json["files"][use] = file.string();
  return json;
}

void printDesktop(const DesktopStatus& desktop) {
  std::cout << translated(
                   "{1}: correction {2}, layout {3} of {4}; version {5}, process {6}, since {7}",
                   {desktop.desktop, correctionOf(desktop), desktop.layout,
                    joined(desktop.layouts, ", "), desktop.version, std::to_string(desktop.process),
                    timeOf(desktop.since)})
            << '\n';
  for (const auto& obstacle : desktop.obstacles)
    std::cout << "  " << posix::translatedSentence(obstacle) << '\n';
}

void print(const Report& report) {
  std::cout << "Tessarok " TESSAROK_VERSION "\n";
  if (report.desktop) printDesktop(*report.desktop);
  if (report.terminal) std::cout << describe(*report.terminal) << '\n';
  for (const auto& obstacle : report.obstacles)
    std::cout << obstacle << '\n';
  std::cout << translated(
                   "words you took back: {1} for ever, {2} once or twice (tessarok learned "
                   "lists them)",
                   {std::to_string(report.learned), std::to_string(report.rejected)})
            << '\n';
  for (const auto& [use, file] : report.files)
    std::cout << translated(use) << ": " << file.string() << '\n';
}

}  // namespace

int runStatus(const Options& options, const StatusOptions& status) {
  // What programs read is the same in every language.
  std::optional<posix::EnglishMessages> english;
  if (status.json) english.emplace();
  const auto report = makeReport(options);
  if (status.json) {
    std::cout << jsonOf(report).dump(2, ' ', false, nlohmann::json::error_handler_t::replace)
              << '\n';
  } else {
    print(report);
  }
  return report.desktop || report.terminal ? 0 : kNothingRuns;
}

}  // namespace tessarok::commands

#include "commands/PersonsFiles.h"

#include <string_view>
#include <utility>

#include "commands/Input.h"
#include "commands/JoinedText.h"
#include "commands/SettingChoices.h"
#include "desktops/posix/SettingsFile.h"
#include "desktops/posix/Translation.h"
#include "platform/SystemLog.h"
#include "text/Text.h"
#include "words/UserDict.h"

namespace tessarok::commands {

namespace {

using posix::translated;

/// What the settings would say of themselves is said here.
class SilentLog final : public platform::SystemLog {
 public:
  void write(std::string_view) override {}
};

void addProblemsWithSettings(std::vector<std::string>& all, platform::Files& files) {
  const auto file = posix::SettingsFile::locationFor(files.homeDirectory());
  SilentLog log;
  posix::SettingsFile settings(file, files, log);
  if (const auto problem = settings.problem()) {
    all.push_back(translated("the settings {1} are not used: {2}", {file.string(), *problem}));
  }
  for (const auto& choice : settingChoices()) {
    const auto value = settings.string(choice.key);
    if (!value || isKnown(choice, *value)) continue;
    all.push_back(translated("the setting \"{1}\" is \"{2}\", which is none of {3}",
                             {choice.key, *value, "\"" + joined(choice.values, "\", \"") + "\""}));
  }
}

/// What it holds; absent where `faultOfList` has something to say, and where there is none.
std::optional<std::string> usableList(platform::Files& files, const char* name) {
  auto text = files.read(UserDict::directory() / name);
  return text && text::isValidUtf8(*text) ? text : std::nullopt;
}

}  // namespace

std::optional<std::string> faultOfList(platform::Files& files, const std::filesystem::path& file) {
  if (!files.exists(file)) return std::nullopt;
  std::string error;
  const auto text = files.read(file, &error);
  if (!text) return error;
  const auto line = lineWithoutUtf8(*text);
  if (!line) return std::nullopt;
  return translated("line {1} is not valid UTF-8", {std::to_string(*line)});
}

std::optional<std::string> problemWithList(platform::Files& files,
                                           const std::filesystem::path& file) {
  const auto fault = faultOfList(files, file);
  if (!fault) return std::nullopt;
  return translated("no word of {1} counts: {2}", {file.string(), *fault});
}

LearnedLists learnedLists(platform::Files& files) {
  LearnedLists lists;
  if (const auto text = usableList(files, kIgnoredName)) lists.readIgnored(*text);
  if (const auto text = usableList(files, kRejectsName)) {
    // What that brings back is written down by whoever corrects.
    static_cast<void>(lists.readRejects(*text));
  }
  return lists;
}

std::vector<std::string> problemsWithFiles(platform::Files& files) {
  std::vector<std::string> all;
  addProblemsWithSettings(all, files);
  for (const auto* name : kListNames) {
    if (auto problem = problemWithList(files, UserDict::directory() / name)) {
      all.push_back(std::move(*problem));
    }
  }
  return all;
}

}  // namespace tessarok::commands

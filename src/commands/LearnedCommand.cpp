#include "commands/LearnedCommand.h"

#include <iostream>
#include <map>
#include <nlohmann/json.hpp>

#include "commands/CommandError.h"
#include "commands/Input.h"
#include "commands/PersonsFiles.h"
#include "desktops/posix/Translation.h"
#include "desktops/terminal/TerminalDesktop.h"
#include "platform/Desktop.h"
#include "text/Text.h"
#include "words/LearnedFiles.h"
#include "words/UserDict.h"

namespace tessarok::commands {

namespace {

using posix::translated;

/// Whether a word stands on the list, and how often its correction was rejected.
struct Entry {
  bool isListed = false;
  std::int64_t rejections = 0;
};

using Entries = std::map<std::string_view, Entry>;

Entries entriesOf(const LearnedLists& lists) {
  Entries entries;
  for (const auto& word : lists.words())
    entries[word].isListed = true;
  for (const auto& [word, rejections] : lists.counts())
    entries[word].rejections = rejections;
  return entries;
}

/// Why words may not be forgotten, besides what the system says.
[[maybe_unused]] constexpr const char* kRefusals[] = {
    posix::translatable("the lists cannot be locked"),
    posix::translatable("the lists cannot be read")};

std::string reasonFor(const Entry& entry) {
  if (entry.isListed) return translated("never corrected: it stands on the list (ignored.txt)");
  // With a third one it is on the list.
  return entry.rejections == 1
             ? translated(
                   "its correction was rejected once; left alone until the program that saw "
                   "it ends, and for ever after two more")
             : translated(
                   "its correction was rejected twice; left alone until the program that saw "
                   "it ends, and for ever after one more");
}

void print(std::string_view word, const Entry& entry, bool json) {
  if (json) {
    std::cout << nlohmann::json{{"word", word},
                                {"list", entry.isListed},
                                {"rejections", entry.rejections}}
              << '\n';
  } else {
    std::cout << word << ": " << reasonFor(entry) << '\n';
  }
}

void sayWhatIsNotUsed(platform::Files& files) {
  for (const auto* name : {kIgnoredName, kRejectsName}) {
    if (const auto problem = problemWithList(files, UserDict::directory() / name)) {
      std::cerr << "tessarok: " << *problem << '\n';
    }
  }
}

}  // namespace

int runLearned(const Options& options, const LearnedOptions& learned) {
  terminal::TerminalDesktop desktop(options.resources);
  platform::setDesktop(desktop);
  sayWhatIsNotUsed(desktop.files());
  const auto lists = learnedLists(desktop.files());
  const auto entries = entriesOf(lists);
  for (const auto& [word, entry] : entries)
    print(word, entry, learned.json);
  if (entries.empty() && !learned.json) {
    std::cout << translated("nothing has been learned yet") << '\n';
  }
  return 0;
}

int runForget(const Options& options, const std::vector<std::string>& words) {
  for (const auto& word : words)
    requireUtf8(word, translated("the word"));
  terminal::TerminalDesktop desktop(options.resources);
  platform::setDesktop(desktop);
  LearnedFiles files;
  files.join(LearnedFiles::Company::many);
  files.load(LearnedFiles::Recovery::onDisk);
  WordSet known;
  int status = 0;
  for (const auto& typed : words) {
    const auto word = text::normalizedWord(text::lowercased(typed));
    if (files.lists().words().contains(word) || files.lists().counts().contains(word)) {
      known.insert(word);
      continue;
    }
    std::cerr << "tessarok: " << translated("{1} has not been learned", {typed}) << '\n';
    status = 1;
  }
  if (!known.empty()) {
    if (const auto failure = files.forget(known)) {
      throw CommandError(
          translated("nothing is forgotten: {1}", {posix::translatedSentence(failure.reason())}));
    }
  }
  files.leave();
  return status;
}

}  // namespace tessarok::commands

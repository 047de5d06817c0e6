#include "commands/CheckDataCommand.h"

#include <iostream>
#include <string>
#include <system_error>

#include "commands/CommandError.h"
#include "desktops/posix/Translation.h"
#include "desktops/terminal/TerminalDesktop.h"
#include "text/Text.h"
#include "words/BuiltinPacks.h"
#include "words/DataFault.h"
#include "words/DictFile.h"
#include "words/Proto.h"
#include "words/ResourceLocator.h"
#include "words/ShortFreq.h"
#include "words/WordLines.h"
#include "words/WordList.h"

namespace tessarok::commands {

namespace {

/// The program reads lists with the mark; in data that a tool has made it is a mistake.
std::optional<DataFault> findMark(std::string_view data) {
  if (!data.starts_with(WordLines::kByteOrderMark)) return std::nullopt;
  return DataFault{1, "the file begins with a byte-order mark"};
}

/// The line of the first byte that is not UTF-8; absent when there is none.
std::optional<DataFault> findBadEncoding(std::string_view data) {
  std::size_t number = 1;
  while (!data.empty()) {
    const auto end = data.find('\n');
    if (!text::isValidUtf8(data.substr(0, end))) return DataFault{number, "not valid UTF-8"};
    if (end == std::string_view::npos) break;
    data.remove_prefix(end + 1);
    ++number;
  }
  return std::nullopt;
}

/// Why a file cannot be mapped, which a mapping does not say.
std::string reasonNotToRead(const std::filesystem::path& file) {
  std::string error = "the file cannot be mapped into memory";
  static_cast<void>(platform::desktop().files().read(file, &error));
  return error;
}

class Checker {
 public:
  /// `findFault` judges the file's content.
  template <typename FindFault>
  void check(const std::string& name, FindFault findFault) {
    const auto location = ResourceLocator::find(name);
    if (!location) return report(name + ".txt", {0, "the file is missing"});
    // As the program itself takes the largest of them; there is no limit to their size.
    const auto file = platform::desktop().files().map(*location);
    if (!file) return report(location->string(), {0, reasonNotToRead(*location)});
    auto fault = findMark(file->bytes());
    if (!fault) fault = findBadEncoding(file->bytes());
    if (!fault) fault = findFault(file->bytes());
    if (fault) return report(location->string(), *fault);
    std::cout << location->string() << ": good\n";
  }
  [[nodiscard]] bool allGood() const { return allGood_; }

 private:
  void report(const std::string& file, const DataFault& fault) {
    allGood_ = false;
    std::cerr << file;
    if (fault.line > 0) std::cerr << ":" << fault.line;
    std::cerr << ": " << fault.reason << '\n';
  }

  bool allGood_ = true;
};

std::optional<DataFault> findPackFault(std::string_view data) {
  if (WordList::parse(data).empty()) return DataFault{0, "the file holds no word"};
  return std::nullopt;
}

}  // namespace

int runCheckData(const Options& options, const std::optional<std::filesystem::path>& directory) {
  std::error_code error;
  if (directory && !std::filesystem::is_directory(*directory, error)) {
    throw CommandError(
        posix::translated("{1} is not an existing directory", {directory->string()}));
  }
  terminal::TerminalDesktop desktop(directory ? directory : options.resources);
  platform::setDesktop(desktop);
  Checker checker;
  for (const std::string name : {"dict_en", "dict_ru"}) {
    checker.check(name, [&](std::string_view data) {
      return DictFile::findFault(data, DictFile::languageOf(name));
    });
  }
  for (const auto& kind : Proto::kKinds) {
    checker.check(kind.resource,
                  [&](std::string_view data) { return Proto::parse(data, kind).fault; });
  }
  checker.check("freq_short_en", [](std::string_view data) {
    return ShortFreq::parse(data, Language::english).fault;
  });
  checker.check("freq_short_ru", [](std::string_view data) {
    return ShortFreq::parse(data, Language::russian).fault;
  });
  for (const auto& pack : BuiltinPacks::all())
    checker.check(pack.resource, findPackFault);
  return checker.allGood() ? 0 : 2;
}

}  // namespace tessarok::commands

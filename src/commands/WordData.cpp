#include "commands/WordData.h"

#include <filesystem>
#include <string_view>
#include <utility>

#include "commands/CommandError.h"
#include "commands/Input.h"
#include "desktops/posix/Translation.h"
#include "platform/Desktop.h"
#include "words/BuiltinPacks.h"
#include "words/DictFile.h"
#include "words/Proto.h"
#include "words/ResourceLocator.h"
#include "words/ShortFreq.h"
#include "words/WordLines.h"
#include "words/WordList.h"

namespace tessarok::commands {

namespace {

void requireFile(const std::string& name) {
  if (ResourceLocator::find(name)) return;
  throw CommandError(
      posix::translated("the data file {1} is missing; see tessarok check-data", {name + ".txt"}));
}

/// The program reads lists with the mark; in data that a tool has made it is a mistake.
std::optional<DataFault> findMark(std::string_view data) {
  if (!data.starts_with(WordLines::kByteOrderMark)) return std::nullopt;
  return DataFault{1, "the file begins with a byte-order mark"};
}

std::optional<DataFault> findBadEncoding(std::string_view data) {
  const auto line = lineWithoutUtf8(data);
  if (!line) return std::nullopt;
  return DataFault{*line, "not valid UTF-8"};
}

/// Why a file cannot be mapped, which a mapping does not say.
std::string reasonNotToRead(const std::filesystem::path& file) {
  std::string error = "the file cannot be mapped into memory";
  static_cast<void>(platform::desktop().files().read(file, &error));
  return error;
}

std::optional<DataFault> findPackFault(std::string_view data) {
  if (WordList::parse(data).empty()) return DataFault{0, "the file holds no word"};
  return std::nullopt;
}

/// `findFault` judges the file's content.
template <typename FindFault>
CheckedFile checked(const std::string& name, FindFault findFault) {
  const auto location = ResourceLocator::find(name);
  if (!location) return {name + ".txt", DataFault{0, "the file is missing"}};
  // As the program itself takes the largest of them; there is no limit to their size.
  const auto file = platform::desktop().files().map(*location);
  if (!file) return {location->string(), DataFault{0, reasonNotToRead(*location)}};
  auto fault = findMark(file->bytes());
  if (!fault) fault = findBadEncoding(file->bytes());
  if (!fault) fault = findFault(file->bytes());
  return {location->string(), std::move(fault)};
}

}  // namespace

void requireWordData(Packs packs) {
  for (const auto* name : {"dict_en", "dict_ru", "freq_short_en", "freq_short_ru"}) {
    requireFile(name);
  }
  for (const auto& kind : Proto::kKinds)
    requireFile(kind.resource);
  if (packs == Packs::unused) return;
  for (const auto& pack : BuiltinPacks::all())
    requireFile(pack.resource);
}

std::vector<CheckedFile> checkWordData() {
  std::vector<CheckedFile> all;
  for (const std::string name : {"dict_en", "dict_ru"}) {
    all.push_back(checked(name, [&](std::string_view data) {
      return DictFile::findFault(data, DictFile::languageOf(name));
    }));
  }
  for (const auto& kind : Proto::kKinds) {
    all.push_back(checked(kind.resource,
                          [&](std::string_view data) { return Proto::parse(data, kind).fault; }));
  }
  all.push_back(checked("freq_short_en", [](std::string_view data) {
    return ShortFreq::parse(data, Language::english).fault;
  }));
  all.push_back(checked("freq_short_ru", [](std::string_view data) {
    return ShortFreq::parse(data, Language::russian).fault;
  }));
  for (const auto& pack : BuiltinPacks::all())
    all.push_back(checked(pack.resource, findPackFault));
  return all;
}

}  // namespace tessarok::commands

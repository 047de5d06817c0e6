#include "Scowl.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>
#include <system_error>

#include "InputError.h"
#include "InputText.h"

namespace tessarok::makedata {

namespace {

/// A kind of list and the largest size taken. The sizes grow with the rarity of the words.
struct Kind {
  std::string_view name;
  int largestSize;
};

// Words and names up to 70 are what an unabridged desk dictionary holds; 80 and 95 are mostly words
// for word games, which would keep mistyped Russian from being fixed. Abbreviations stop at 50 for
// the same reason: beyond, they are nearly random letters. Contractions are left out because every
// one has an apostrophe.
constexpr std::array<Kind, 5> kKinds = {
    {{"words", 70}, {"upper", 70}, {"proper-names", 70}, {"abbreviations", 50}, {"hacker", 50}}};

constexpr std::array<std::string_view, 4> kVariants = {"english", "american", "british", "special"};

constexpr std::string_view kCommonest = "english-words.10";

}  // namespace

bool isWantedScowlList(std::string_view fileName) {
  const std::size_t dash = fileName.find('-');
  const std::size_t dot = fileName.rfind('.');
  if (dash == std::string_view::npos || dot == std::string_view::npos || dot < dash) return false;
  if (std::find(kVariants.begin(), kVariants.end(), fileName.substr(0, dash)) == kVariants.end()) {
    return false;
  }
  int size = 0;
  const auto [end, error] =
      std::from_chars(fileName.data() + dot + 1, fileName.data() + fileName.size(), size);
  if (error != std::errc() || end != fileName.data() + fileName.size()) return false;
  const std::string_view kind = fileName.substr(dash + 1, dot - dash - 1);
  return std::any_of(kKinds.begin(), kKinds.end(), [kind, size](const Kind& wanted) {
    return wanted.name == kind && size <= wanted.largestSize;
  });
}

std::vector<std::filesystem::path> findScowlLists(const std::filesystem::path& directory) {
  std::error_code error;
  std::filesystem::directory_iterator entry(directory, error);
  if (error) throw InputError(directory, 0, "cannot be listed: " + error.message());
  std::vector<std::filesystem::path> lists;
  for (const std::filesystem::directory_iterator end; entry != end; entry.increment(error)) {
    if (isWantedScowlList(entry->path().filename().string())) lists.push_back(entry->path());
  }
  // Which also ends the loop.
  if (error) throw InputError(directory, 0, "cannot be listed: " + error.message());
  std::sort(lists.begin(), lists.end());
  const bool hasCommonest = std::any_of(
      lists.begin(), lists.end(), [](const auto& list) { return list.filename() == kCommonest; });
  if (!hasCommonest) {
    throw InputError(directory, 0, "the list " + std::string(kCommonest) + " is missing");
  }
  return lists;
}

int sizeOfScowlList(const std::filesystem::path& list) {
  return std::stoi(list.extension().string().substr(1));
}

void readScowlList(std::string_view utf8, const std::filesystem::path& file, const FormSink& sink) {
  for (const Line& line : splitLines(utf8)) {
    const std::vector<std::string_view> fields = splitFields(line.text);
    if (fields.size() != 1) throw InputError(file, line.number, "a line must hold one word");
    sink(decodeUtf8(fields.front()));
  }
}

}  // namespace tessarok::makedata

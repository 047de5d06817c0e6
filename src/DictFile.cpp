#include "DictFile.h"

#include <algorithm>
#include <cstring>

#include "ResourceLocator.h"
#include "platform/Desktop.h"

namespace tessarok {

namespace {

/// The line that holds byte `position`.
struct Line {
  std::size_t start = 0;
  std::size_t end = 0;
};

std::size_t lineEnd(std::string_view data, std::size_t from) {
  return std::min(data.find('\n', from), data.size());
}

Line lineAt(std::string_view data, std::size_t position) {
  std::size_t start = position;
  while (start > 0 && data[start - 1] != '\n')
    --start;
  return {start, lineEnd(data, start)};
}

bool isEnglishLine(std::string_view line) {
  return std::all_of(line.begin(), line.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

/// The 33 letters in UTF-8: а to п, р to я, ё.
bool isRussianPair(unsigned char first, unsigned char second) {
  if (first == 0xD0) return second >= 0xB0 && second <= 0xBF;
  return first == 0xD1 && ((second >= 0x80 && second <= 0x8F) || second == 0x91);
}

bool isRussianLine(std::string_view line) {
  if (line.size() % 2 != 0) return false;
  for (std::size_t i = 0; i < line.size(); i += 2) {
    if (!isRussianPair(static_cast<unsigned char>(line[i]),
                       static_cast<unsigned char>(line[i + 1]))) {
      return false;
    }
  }
  return true;
}

std::string badAlphabet(bool russian) {
  return russian ? "only the letters а to я and ё are allowed"
                 : "only the letters a to z are allowed";
}

}  // namespace

DictFile::DictFile(const std::string& resource) {
  const auto location = ResourceLocator::url(resource);
  if (!location) return;
  auto file = platform::desktop().files().map(*location);
  if (!file) return;
  if (findFault(file->bytes(), isRussian(resource))) {
    platform::desktop().systemLog().write("Tessarok: invalid dictionary resource " + resource +
                                          "; automatic layout correction disabled");
    return;
  }
  file_ = std::move(file);
}

bool DictFile::isAvailable() const {
  return !data().empty();
}

std::string_view DictFile::data() const {
  return file_ ? file_->bytes() : std::string_view();
}

bool DictFile::isRussian(std::string_view resource) {
  return resource == "dict_ru";
}

bool DictFile::contains(std::string_view word) const {
  const auto bytes = data();
  if (word.empty() || bytes.empty()) return false;
  std::size_t low = 0;
  std::size_t high = bytes.size();
  while (low < high) {
    const auto line = lineAt(bytes, low + (high - low) / 2);
    const int order = bytes.substr(line.start, line.end - line.start).compare(word);
    if (order == 0) return true;
    if (order < 0) {
      low = line.end + 1;
    } else {
      high = line.start;
    }
  }
  return false;
}

std::optional<DataFault> DictFile::findFault(std::string_view data, bool russian) {
  if (data.empty()) return DataFault{0, "the file is empty"};
  std::string_view previous;
  std::size_t number = 1;
  for (std::size_t start = 0; start < data.size(); ++number) {
    const auto end = lineEnd(data, start);
    const auto line = data.substr(start, end - start);
    if (line.empty()) return DataFault{number, "the line is empty"};
    if (line.ends_with('\r')) return DataFault{number, kCrLfReason};
    if (!(russian ? isRussianLine(line) : isEnglishLine(line))) {
      return DataFault{number, badAlphabet(russian)};
    }
    if (number > 1 && line.compare(previous) < 0) {
      return DataFault{
          number, "the line sorts before the one above it (lines are in the order of their bytes)"};
    }
    previous = line;
    start = end + 1;
  }
  return std::nullopt;
}

}  // namespace tessarok

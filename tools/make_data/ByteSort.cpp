#include "ByteSort.h"

#include <algorithm>

namespace tessarok::makedata {

void sortByBytes(std::vector<std::string>& words) {
  // std::string compares its characters as unsigned bytes, also where char is signed.
  std::sort(words.begin(), words.end());
  words.erase(std::unique(words.begin(), words.end()), words.end());
}

std::string joinLines(const std::vector<std::string>& words) {
  std::size_t size = 0;
  for (const std::string& word : words)
    size += word.size() + 1;
  std::string text;
  text.reserve(size);
  for (const std::string& word : words) {
    text += word;
    text += '\n';
  }
  return text;
}

}  // namespace tessarok::makedata

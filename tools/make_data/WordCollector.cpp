#include "WordCollector.h"

#include <utility>

#include "ByteSort.h"
#include "InputText.h"

namespace tessarok::makedata {

bool WordCollector::add(std::u32string_view form) {
  const std::u32string word = lowerCase(form);
  if (!alphabet_.isWord(word)) return false;
  words_.push_back(encodeUtf8(word));
  if (const auto plain = withoutYo(word)) words_.push_back(encodeUtf8(*plain));
  return true;
}

std::vector<std::string> WordCollector::take() {
  std::vector<std::string> words = std::exchange(words_, {});
  sortByBytes(words);
  std::erase_if(words, [this](const std::string& word) { return dropped_.contains(word); });
  dropped_.clear();
  return words;
}

}  // namespace tessarok::makedata

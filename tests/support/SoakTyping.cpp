#include "tests/support/SoakTyping.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include "desktops/layouts/KeyTable.h"
#include "text/Text.h"

namespace tessarok::testing {

namespace {

using layouts::KeyTable;

constexpr std::chrono::seconds kUsualDuration{8};
constexpr std::size_t kLongestWord = 12;
constexpr char kPauseKey = '`';

}  // namespace

SoakTyping::SoakTyping(unsigned seed) : random_(seed) {
  addWords("dict_en.txt");
  addWords("dict_ru.txt");
}

void SoakTyping::addWords(const char* dictionary) {
  std::ifstream file(std::string(TESSAROK_TEST_DATA) + "/" + dictionary);
  for (std::string word; std::getline(file, word);) {
    const auto keys = keysOf(word);
    const bool isUsable = keys.size() > 1 && keys.size() <= kLongestWord && keys.front() != '#' &&
                          keys.find(kPauseKey) == std::string::npos;
    if (isUsable) words_.push_back(keys);
  }
}

std::chrono::seconds SoakTyping::duration() {
  const char* wanted = std::getenv("TESSAROK_SOAK_SECONDS");
  return wanted == nullptr ? kUsualDuration : std::chrono::seconds(std::atoi(wanted));
}

std::string SoakTyping::keysOf(const std::string& text) {
  std::string keys;
  for (const char32_t scalar : text::utf16(text)) {
    auto stroke = KeyTable::russian().strokeFor(scalar);
    if (scalar < 0x80) stroke = KeyTable::english().strokeFor(scalar);
    const auto key = stroke ? KeyTable::english().character(stroke->code, false) : std::nullopt;
    keys.push_back(key ? static_cast<char>(*key) : static_cast<char>(scalar));
  }
  return keys;
}

std::vector<std::string> SoakTyping::someWords() {
  constexpr int kCount = 20;
  std::vector<std::string> some;
  for (int i = 0; i < kCount; ++i)
    some.push_back(word());
  return some;
}

std::string SoakTyping::difference(const std::string& shown) const {
  constexpr std::ptrdiff_t kBefore = 40;
  constexpr std::size_t kLength = 80;
  const auto [at, _] =
      std::mismatch(shown.begin(), shown.end(), onScreen_.begin(), onScreen_.end());
  const auto from =
      static_cast<std::size_t>(std::max<std::ptrdiff_t>(at - shown.begin() - kBefore, 0));
  return "after " + std::to_string(count_) + " keys, shown '" + shown.substr(from, kLength) +
         "', pressed '" + onScreen_.substr(from, kLength) + "'";
}

std::string SoakTyping::words() {
  std::string keys;
  for (auto count = 1 + below(5); count > 0; --count) {
    keys += word();
    if (below(20) == 0) keys += "q\b";
    keys += below(6) == 0 ? '\n' : ' ';
  }
  return keys;
}

void SoakTyping::note(std::string_view keys) {
  count_ += keys.size();
  for (const char key : keys) {
    if (key != '\b') {
      onScreen_.push_back(key);
    } else if (!onScreen_.empty()) {
      onScreen_.pop_back();
    }
  }
}

}  // namespace tessarok::testing

#include "KeyText.h"

#include <stdexcept>

#include "InputText.h"

namespace tessarok::makedata {

namespace {

constexpr std::u32string_view kRussian = U"фисвуапршолдьтщзйкыегмцчняёхъжэбю";
static_assert(kRussian.size() == kKeys.size());

}  // namespace

std::string keysOf(std::string_view russian) {
  std::string keys;
  for (const char32_t letter : decodeUtf8(russian)) {
    const auto place = kRussian.find(letter);
    if (place == std::u32string_view::npos) throw std::invalid_argument("no Russian letter");
    keys += kKeys[place];
  }
  return keys;
}

std::string russianOf(std::string_view keys) {
  std::u32string letters;
  for (const char key : keys)
    letters += kRussian.at(kKeys.find(key));
  return encodeUtf8(letters);
}

bool isPunctuationKey(char key) {
  return key < 'a' || key > 'z';
}

}  // namespace tessarok::makedata

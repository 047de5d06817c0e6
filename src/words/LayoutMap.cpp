#include "words/LayoutMap.h"

#include <algorithm>
#include <array>
#include <utility>

#include "text/Text.h"

namespace tessarok {

namespace {

// The same keys in both layouts: 34 without Shift, then the same 34 with it.
constexpr std::u32string_view kEnChars =
    U"`qwertyuiop[]asdfghjkl;'zxcvbnm,./"
    U"~QWERTYUIOP{}ASDFGHJKL:\"ZXCVBNM<>?";
constexpr std::u32string_view kRuChars =
    U"ёйцукенгшщзхъфывапролджэячсмитьбю."
    U"ЁЙЦУКЕНГШЩЗХЪФЫВАПРОЛДЖЭЯЧСМИТЬБЮ,";
static_assert(kEnChars.size() == 68 && kRuChars.size() == 68);

LayoutMap::Map paired(std::u32string_view keys, std::u32string_view values) {
  LayoutMap::Map map;
  for (std::size_t i = 0; i < keys.size(); ++i)
    map[keys[i]] = values[i];
  return map;
}

LayoutMap::Set setOf(std::u32string_view characters) {
  return {characters.begin(), characters.end()};
}

/// A map once more, for what is asked for every letter: the scalars of both alphabets have places
/// of their own. A hash map takes four times as long, a quarter of a decision.
class QuickMap {
 public:
  explicit QuickMap(const LayoutMap::Map& map) {
    direct_.fill(kNone);
    for (const auto& [key, value] : map) {
      if (key < kDirect) direct_[key] = value;
    }
  }
  /// What the key of `scalar` gives; `scalar` itself when `map`, the one this was made of, does
  /// not hold it.
  [[nodiscard]] char32_t valueOf(char32_t scalar, const LayoutMap::Map& map) const {
    if (scalar < kDirect) return direct_[scalar] == kNone ? scalar : direct_[scalar];
    const auto found = map.find(scalar);
    return found == map.end() ? scalar : found->second;
  }

 private:
  /// Up to ё, the last letter of both alphabets.
  static constexpr std::size_t kDirect = U'ё' + 1;
  static constexpr char32_t kNone = 0xFFFFFFFF;

  std::array<char32_t, kDirect> direct_;
};

struct Tables {
  LayoutMap::Map enToRu = paired(kEnChars, kRuChars);
  LayoutMap::Map ruToEn = paired(kRuChars, kEnChars);
  QuickMap quickEnToRu{enToRu};
  QuickMap quickRuToEn{ruToEn};
  LayoutMap::Set russianLetterKeys = LayoutMap::letterKeys(enToRu);
  bool isAvailable = true;
};

Tables& tables() {
  static Tables instance;
  return instance;
}

bool hasKeys(const LayoutMap::Map& map, const LayoutMap::Set& keys) {
  return std::all_of(keys.begin(), keys.end(), [&](char32_t key) { return map.contains(key); });
}

bool hasValues(const LayoutMap::Map& map, const LayoutMap::Set& values) {
  LayoutMap::Set found;
  for (const auto& [key, value] : map)
    found.insert(value);
  return std::all_of(values.begin(), values.end(),
                     [&](char32_t value) { return found.contains(value); });
}

bool isComplete(const LayoutMap::Map& enToRu, const LayoutMap::Map& ruToEn) {
  return hasKeys(enToRu, LayoutMap::englishLetters()) &&
         hasValues(enToRu, LayoutMap::russianLetters()) &&
         hasKeys(ruToEn, LayoutMap::russianLetters()) &&
         hasValues(ruToEn, LayoutMap::englishLetters());
}

const LayoutMap::Map& mapFrom(Language layout) {
  return layout == Language::russian ? tables().ruToEn : tables().enToRu;
}

template <typename String>
void appendTo(std::string_view text, Language from, String& out) {
  const auto& map = mapFrom(from);
  const auto& quick = from == Language::russian ? tables().quickRuToEn : tables().quickEnToRu;
  for (const auto character : text::Characters(text)) {
    if (const auto scalar = text::singleScalar(character)) {
      text::appendScalar(quick.valueOf(*scalar, map), out);
    } else {
      out.append(character);
    }
  }
}

}  // namespace

const LayoutMap::Map& LayoutMap::enToRu() {
  return tables().enToRu;
}

const LayoutMap::Map& LayoutMap::ruToEn() {
  return tables().ruToEn;
}

const LayoutMap::Set& LayoutMap::englishLetters() {
  static const Set letters = setOf(U"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ");
  return letters;
}

const LayoutMap::Set& LayoutMap::russianLetters() {
  static const Set letters = setOf(
      U"абвгдеёжзийклмнопрстуфхцчшщъыьэюя"
      U"АБВГДЕЁЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯ");
  return letters;
}

const LayoutMap::Set& LayoutMap::russianLetterKeys() {
  return tables().russianLetterKeys;
}

bool LayoutMap::isKeyOf(Language layout, std::string_view character) {
  const auto scalar = text::singleScalar(character);
  return scalar && mapFrom(layout).contains(*scalar);
}

bool LayoutMap::isRussianLetterKey(std::string_view character) {
  const auto scalar = text::singleScalar(character);
  return scalar && russianLetterKeys().contains(*scalar);
}

bool LayoutMap::isAvailable() {
  return tables().isAvailable;
}

std::string LayoutMap::convert(std::string_view text, Language from) {
  std::string out;
  out.reserve(text.size() * 2);
  appendTo(text, from, out);
  return out;
}

void LayoutMap::appendConverted(std::string_view text, Language from, ScratchText::String& out) {
  appendTo(text, from, out);
}

LayoutMap::Set LayoutMap::letterKeys(const Map& map) {
  Set keys;
  std::string spelled;
  for (const auto& [key, value] : map) {
    spelled.clear();
    text::appendScalar(key, spelled);
    if (!text::isLetter(spelled) && russianLetters().contains(value)) keys.insert(key);
  }
  return keys;
}

bool LayoutMap::install(Map enToRu, Map ruToEn) {
  auto& current = tables();
  current.isAvailable = isComplete(enToRu, ruToEn);
  current.enToRu = current.isAvailable ? std::move(enToRu) : Map();
  current.ruToEn = current.isAvailable ? std::move(ruToEn) : Map();
  current.quickEnToRu = QuickMap(current.enToRu);
  current.quickRuToEn = QuickMap(current.ruToEn);
  current.russianLetterKeys = letterKeys(current.enToRu);
  return current.isAvailable;
}

}  // namespace tessarok

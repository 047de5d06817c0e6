#include "desktops/layouts/KeyTable.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "platform/LayoutIdentifiers.h"

namespace tessarok::layouts {

namespace {

// The hardware codes of the rows of an ANSI keyboard, left to right, and the extra ISO key.
constexpr std::uint8_t kDigitRow[] = {50, 18, 19, 20, 21, 23, 22, 26, 28, 25, 29, 27, 24};
constexpr std::uint8_t kUpperRow[] = {12, 13, 14, 15, 17, 16, 32, 34, 31, 35, 33, 30, 42};
constexpr std::uint8_t kHomeRow[] = {0, 1, 2, 3, 5, 4, 38, 40, 37, 41, 39};
constexpr std::uint8_t kLowerRow[] = {6, 7, 8, 9, 11, 45, 46, 43, 47, 44};
constexpr std::uint8_t kIsoKey[] = {10};

constexpr std::span<const std::uint8_t> kRows[] = {kDigitRow, kUpperRow, kHomeRow, kLowerRow,
                                                   kIsoKey};

constexpr const char16_t* kEnglish[10] = {u"`1234567890-=",
                                          u"~!@#$%^&*()_+",
                                          u"qwertyuiop[]\\",
                                          u"QWERTYUIOP{}|",
                                          u"asdfghjkl;'",
                                          u"ASDFGHJKL:\"",
                                          u"zxcvbnm,./",
                                          u"ZXCVBNM<>?",
                                          u"§",
                                          u"±"};
constexpr const char16_t* kRussian[10] = {u"ё1234567890-=",
                                          u"Ё!\"№;%:?*()_+",
                                          u"йцукенгшщзхъ\\",
                                          u"ЙЦУКЕНГШЩЗХЪ/",
                                          u"фывапролджэ",
                                          u"ФЫВАПРОЛДЖЭ",
                                          u"ячсмитьбю.",
                                          u"ЯЧСМИТЬБЮ,",
                                          u">",
                                          u"<"};

/// Row and place of a key. No optional of it: older C++ libraries assign none in constants. A key
/// that is in no table is all zeros: optimised by g++ 13 and 14, some keys in the table of places
/// had these whatever the initial values said, and Return, Tab and Space gave ё.
struct Place {
  /// Counted from 1.
  std::size_t row = 0;
  std::size_t column = 0;
};

constexpr std::size_t kCodes = 51;

constexpr auto kPlaces = [] {
  std::array<Place, kCodes> places{};
  for (std::size_t row = 0; row < std::size(kRows); ++row) {
    for (std::size_t column = 0; column < kRows[row].size(); ++column) {
      places[kRows[row][column]] = Place{row + 1, column};
    }
  }
  return places;
}();

}  // namespace

const KeyTable& KeyTable::english() {
  static const KeyTable table(kEnglish);
  return table;
}

const KeyTable& KeyTable::russian() {
  static const KeyTable table(kRussian);
  return table;
}

const KeyTable* KeyTable::ofLayout(std::string_view identifier) {
  namespace ids = platform::layoutIdentifiers;
  const auto isOneOf = [&](const auto& layouts) {
    return std::find(std::begin(layouts), std::end(layouts), identifier) != std::end(layouts);
  };
  if (isOneOf(ids::kAllEnglish)) return &english();
  return isOneOf(ids::kAllRussian) ? &russian() : nullptr;
}

std::optional<char16_t> KeyTable::character(std::int64_t code, bool shift) const {
  if (code < 0 || code >= static_cast<std::int64_t>(kCodes)) return std::nullopt;
  const auto place = kPlaces[static_cast<std::size_t>(code)];
  if (place.row == 0) return std::nullopt;
  return rows_[2 * (place.row - 1) + (shift ? 1 : 0)][place.column];
}

std::optional<KeyTable::Stroke> KeyTable::strokeFor(char32_t wanted) const {
  for (const bool shift : {false, true}) {
    for (const auto& row : kRows) {
      for (const auto code : row) {
        if (character(code, shift) == wanted) return Stroke{code, shift};
      }
    }
  }
  return std::nullopt;
}

}  // namespace tessarok::layouts

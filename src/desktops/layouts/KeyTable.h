#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "words/Language.h"

namespace tessarok::layouts {

/// Which character each key of a layout gives, plain and with Shift. Two tables exist: the one of
/// the English layouts and the one of the Russian ones.
class KeyTable {
 public:
  /// A key and whether Shift is held with it.
  struct Stroke {
    std::int64_t code = 0;
    bool shift = false;
  };

  [[nodiscard]] static const KeyTable& english();
  [[nodiscard]] static const KeyTable& russian();
  [[nodiscard]] static const KeyTable& of(Language language) {
    return language == Language::russian ? russian() : english();
  }
  /// The table of a layout; null for a layout without data.
  [[nodiscard]] static const KeyTable* ofLayout(std::string_view identifier);

  /// Absent for keys that type nothing.
  [[nodiscard]] std::optional<char16_t> character(std::int64_t code, bool shift) const;
  /// The key that types a character; absent when none does.
  [[nodiscard]] std::optional<Stroke> strokeFor(char32_t character) const;

 private:
  explicit KeyTable(const char16_t* const (&rows)[10]) : rows_(rows) {}

  /// Five rows of keys, each plain and then with Shift.
  const char16_t* const (&rows_)[10];
};

}  // namespace tessarok::layouts

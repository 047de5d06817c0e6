#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "InputText.h"

namespace tessarok::makedata {

/// A condition of an affix rule: one set of letters per position, such as `[^зс]ть` or `.`.
class AffixCondition final {
 public:
  /// Throws std::invalid_argument with the reason when the brackets do not pair up.
  explicit AffixCondition(std::u32string_view pattern);

  [[nodiscard]] bool matchesStart(std::u32string_view word) const;
  [[nodiscard]] bool matchesEnd(std::u32string_view word) const;

 private:
  struct Position {
    std::u32string letters;
    bool negated = false;
  };

  [[nodiscard]] bool matchesAt(std::u32string_view word, std::size_t offset) const;

  std::vector<Position> positions_;
};

/// The affix classes of a hunspell .aff file, which aspell's affix files share: every flag of a
/// dictionary entry names a class, and every rule of the class whose condition holds gives a form.
///
/// Understands single-character flags, PFX and SFX with cross products, and skips what only serves
/// spelling suggestions. Anything else that could change the set of forms is refused, so that no
/// word list is silently incomplete.
class AffixTable final {
 public:
  /// `utf8` is the file's text; `file` is used in errors only. Throws InputError.
  [[nodiscard]] static AffixTable parse(std::string_view utf8, const std::filesystem::path& file);

  [[nodiscard]] bool hasFlag(char32_t flag) const { return classes_.contains(flag); }

  /// Appends the stem and all its forms to `forms`; a form made by two rules appears twice. Flags
  /// without a class give nothing.
  void expand(std::u32string_view stem, std::u32string_view flags,
              std::vector<std::u32string>& forms) const;

 private:
  struct Rule {
    std::u32string strip;
    std::u32string add;
    AffixCondition condition;
  };

  struct AffixClass {
    bool isPrefix = false;
    bool crosses = false;
    std::size_t announced = 0;
    std::size_t headerLine = 0;
    std::vector<Rule> rules;
  };

  class Parser;

  static void applySuffixes(const AffixClass& affixes, std::u32string_view stem,
                            std::vector<std::u32string>& forms);
  static void applyPrefixes(const AffixClass& affixes, std::u32string_view stem,
                            std::vector<std::u32string>& forms);

  std::map<char32_t, AffixClass> classes_;
};

}  // namespace tessarok::makedata

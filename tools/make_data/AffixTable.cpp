#include "AffixTable.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <stdexcept>

#include "InputError.h"

namespace tessarok::makedata {

namespace {

/// Directives that only serve suggestions, tokenising or descriptions: they add and remove no form.
constexpr std::array<std::string_view, 12> kHarmless = {"SET",  "TRY",       "KEY",   "LANG",
                                                        "NAME", "VERSION",   "HOME",  "REP",
                                                        "MAP",  "WORDCHARS", "BREAK", "ICONV"};

bool isHarmless(std::string_view directive) {
  return std::find(kHarmless.begin(), kHarmless.end(), directive) != kHarmless.end();
}

bool parseCount(std::string_view text, std::size_t& count) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  return error == std::errc() && end == text.data() + text.size();
}

/// "0" stands for "nothing" in the strip and the affix column.
std::u32string affixText(std::string_view field) {
  return field == "0" ? std::u32string() : decodeUtf8(field);
}

}  // namespace

AffixCondition::AffixCondition(std::u32string_view pattern) {
  if (pattern == U".") return;  // holds for every word, the empty one too
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] == U']') throw std::invalid_argument("']' without '[' in the condition");
    if (pattern[i] == U'.') {
      positions_.push_back({std::u32string(), true});
      continue;
    }
    if (pattern[i] != U'[') {
      positions_.push_back({std::u32string(1, pattern[i]), false});
      continue;
    }
    const std::size_t close = pattern.find(U']', i);
    if (close == std::u32string_view::npos) {
      throw std::invalid_argument("'[' without ']' in the condition");
    }
    std::u32string_view letters = pattern.substr(i + 1, close - i - 1);
    const bool negated = letters.starts_with(U'^');
    if (negated) letters.remove_prefix(1);
    if (letters.empty()) throw std::invalid_argument("empty brackets in the condition");
    positions_.push_back({std::u32string(letters), negated});
    i = close;
  }
}

bool AffixCondition::matchesAt(std::u32string_view word, std::size_t offset) const {
  for (std::size_t i = 0; i < positions_.size(); ++i) {
    const bool listed = positions_[i].letters.find(word[offset + i]) != std::u32string::npos;
    if (listed == positions_[i].negated) return false;
  }
  return true;
}

bool AffixCondition::matchesStart(std::u32string_view word) const {
  return word.size() >= positions_.size() && matchesAt(word, 0);
}

bool AffixCondition::matchesEnd(std::u32string_view word) const {
  return word.size() >= positions_.size() && matchesAt(word, word.size() - positions_.size());
}

/// Reads an .aff file line by line: a class header opens a class, the announced number of rules
/// follows it.
class AffixTable::Parser final {
 public:
  explicit Parser(const std::filesystem::path& file) : file_(file) {}

  void take(const Line& line) {
    line_ = line.number;
    const std::vector<std::string_view> fields = splitFields(line.text);
    if (fields.empty() || fields.front().starts_with('#')) return;
    const std::string_view directive = fields.front();
    if (directive == "PFX" || directive == "SFX") return takeAffix(fields);
    if (directive == "FLAG") return takeFlagKind(fields);
    if (!isHarmless(directive)) {
      fail("the directive '" + std::string(directive) + "' is not supported");
    }
  }

  [[nodiscard]] AffixTable finish() {
    for (const auto& [flag, affixes] : table_.classes_) {
      if (affixes.rules.size() == affixes.announced) continue;
      line_ = affixes.headerLine;
      fail("the class announces " + std::to_string(affixes.announced) + " rules and has " +
           std::to_string(affixes.rules.size()));
    }
    return std::move(table_);
  }

 private:
  [[noreturn]] void fail(const std::string& reason) const {
    throw InputError(file_, line_, reason);
  }

  void takeFlagKind(const std::vector<std::string_view>& fields) const {
    if (fields.size() == 2 && fields[1] == "UTF-8") return;
    fail("only flags of one character are supported");
  }

  void takeAffix(const std::vector<std::string_view>& fields) {
    if (fields.size() < 4) fail("an affix line has at least four columns");
    const std::u32string flag = decodeUtf8(fields[1]);
    if (flag.size() != 1) fail("only flags of one character are supported");
    const bool isPrefix = fields.front() == "PFX";
    const auto found = table_.classes_.find(flag.front());
    if (found == table_.classes_.end()) return openClass(flag.front(), isPrefix, fields);
    if (found->second.isPrefix != isPrefix) fail("the flag is both a prefix and a suffix");
    addRule(found->second, fields);
  }

  void openClass(char32_t flag, bool isPrefix, const std::vector<std::string_view>& fields) {
    AffixClass affixes;
    affixes.isPrefix = isPrefix;
    affixes.headerLine = line_;
    if (fields[2] != "Y" && fields[2] != "N") fail("the header's third column is Y or N");
    affixes.crosses = fields[2] == "Y";
    if (!parseCount(fields[3], affixes.announced)) fail("the header's fourth column is a number");
    table_.classes_.emplace(flag, std::move(affixes));
  }

  void addRule(AffixClass& affixes, const std::vector<std::string_view>& fields) {
    if (affixes.rules.size() == affixes.announced) fail("more rules than the header announces");
    if (fields[3].find('/') != std::string_view::npos) {
      fail("flags on an affix are not supported");
    }
    try {
      affixes.rules.push_back({affixText(fields[2]), affixText(fields[3]),
                               AffixCondition(fields.size() > 4 ? decodeUtf8(fields[4]) : U".")});
    } catch (const std::invalid_argument& error) {
      fail(error.what());
    }
  }

  const std::filesystem::path& file_;
  std::size_t line_ = 0;
  AffixTable table_;
};

AffixTable AffixTable::parse(std::string_view utf8, const std::filesystem::path& file) {
  Parser parser(file);
  for (const Line& line : splitLines(utf8))
    parser.take(line);
  return parser.finish();
}

// A rule never eats the whole stem: an affix is added to something.
void AffixTable::applySuffixes(const AffixClass& affixes, std::u32string_view stem,
                               std::vector<std::u32string>& forms) {
  for (const Rule& rule : affixes.rules) {
    if (stem.size() <= rule.strip.size() || !stem.ends_with(rule.strip)) continue;
    if (!rule.condition.matchesEnd(stem)) continue;
    std::u32string form(stem.substr(0, stem.size() - rule.strip.size()));
    forms.push_back(std::move(form += rule.add));
  }
}

void AffixTable::applyPrefixes(const AffixClass& affixes, std::u32string_view stem,
                               std::vector<std::u32string>& forms) {
  for (const Rule& rule : affixes.rules) {
    if (stem.size() <= rule.strip.size() || !stem.starts_with(rule.strip)) continue;
    if (!rule.condition.matchesStart(stem)) continue;
    std::u32string form = rule.add;
    forms.push_back(std::move(form += stem.substr(rule.strip.size())));
  }
}

void AffixTable::expand(std::u32string_view stem, std::u32string_view flags,
                        std::vector<std::u32string>& forms) const {
  std::vector<const AffixClass*> prefixes;
  std::vector<const AffixClass*> suffixes;
  for (const char32_t flag : flags) {
    const auto found = classes_.find(flag);
    if (found == classes_.end()) continue;
    (found->second.isPrefix ? prefixes : suffixes).push_back(&found->second);
  }

  forms.emplace_back(stem);
  std::vector<std::u32string> crossing;  // suffixed forms that may take a prefix as well
  for (const AffixClass* affixes : suffixes) {
    const auto before = static_cast<std::ptrdiff_t>(forms.size());
    applySuffixes(*affixes, stem, forms);
    if (prefixes.empty() || !affixes->crosses) continue;
    crossing.insert(crossing.end(), forms.begin() + before, forms.end());
  }
  for (const AffixClass* affixes : prefixes) {
    applyPrefixes(*affixes, stem, forms);
    if (!affixes->crosses) continue;
    for (const std::u32string& form : crossing)
      applyPrefixes(*affixes, form, forms);
  }
}

}  // namespace tessarok::makedata

#include "Typography.h"

#include <array>
#include <utility>

#include "text/Text.h"

namespace tessarok::measure {

namespace {

using Replacement = std::pair<std::string_view, std::string_view>;

constexpr std::array kReplacements = {
    Replacement{"«", "\""},     Replacement{"»", "\""},     Replacement{"“", "\""},
    Replacement{"”", "\""},     Replacement{"„", "\""},     Replacement{"‘", "'"},
    Replacement{"’", "'"},      Replacement{"–", "-"},      Replacement{"—", "-"},
    Replacement{"―", "-"},      Replacement{"−", "-"},      Replacement{"‑", "-"},
    Replacement{"…", "..."},    Replacement{"\u00A0", " "}, Replacement{"\u202F", " "},
    Replacement{"\u2009", " "}, Replacement{"\u200B", ""},  Replacement{"\u00AD", ""},
    Replacement{"\t", " "},     Replacement{"\n", " "},     Replacement{"\r", " "},
};

/// What to write for the start of the text; the text's own first byte when nothing matches.
Replacement replacementAt(std::string_view text) {
  for (const auto& replacement : kReplacements) {
    if (text.starts_with(replacement.first)) return replacement;
  }
  return {text.substr(0, 1), text.substr(0, 1)};
}

}  // namespace

std::string asTyped(std::string_view text) {
  const auto composed = text::composed(text);
  std::string_view rest = composed;
  std::string typed;
  while (!rest.empty()) {
    const auto [from, to] = replacementAt(rest);
    rest.remove_prefix(from.size());
    const bool repeatsSpace = to == " " && (typed.empty() || typed.back() == ' ');
    if (!repeatsSpace) typed += to;
  }
  if (typed.ends_with(' ')) typed.pop_back();
  return typed;
}

}  // namespace tessarok::measure

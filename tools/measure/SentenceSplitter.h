#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "words/Language.h"

namespace tessarok::measure {

/// Cuts a paragraph, as `asTyped` gives it, into sentences: after a full stop, question or
/// exclamation mark (and the quotes that close it) before a capital letter.
[[nodiscard]] std::vector<std::string> splitSentences(std::string_view paragraph);

/// Whether the sentence is natural text of one language that a person can type on that language's
/// keyboard without leaving it: two words at least, and no letter of another alphabet.
[[nodiscard]] bool isSentenceOf(std::string_view sentence, Language language);

}  // namespace tessarok::measure

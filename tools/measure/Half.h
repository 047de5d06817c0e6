#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tessarok::measure {

/// Every sentence belongs to one of two halves for good, whatever corpus it is met in: the word
/// data learn from one half and are judged on the other.
enum class Half { making, judging };

[[nodiscard]] Half halfOf(std::string_view sentence);

/// Whether a sentence is of the third that is in neither half of some corpora. Nothing may be
/// chosen by it: it tells at the end how good the choices are.
[[nodiscard]] bool isOfUnseenThird(std::string_view sentence);

/// "making" or "judging"; absent for any other word.
[[nodiscard]] std::optional<Half> halfNamed(const std::string& name);

}  // namespace tessarok::measure

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tessarok::measure {

/// Every sentence belongs to one of two halves for good, whatever corpus it is met in: the word
/// data learn from one half and are judged on the other.
enum class Half { making, judging };

[[nodiscard]] Half halfOf(std::string_view sentence);

/// "making" or "judging"; absent for any other word.
[[nodiscard]] std::optional<Half> halfNamed(const std::string& name);

}  // namespace tessarok::measure

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessarok::commands {

/// How many lines of each kind a diagnostic log holds, in the order of what they tell; kinds that
/// do not occur are left out. Only the kinds that the program writes have names here, so that
/// nothing of a file that is no log gets into the answer: its lines are counted as "other lines".
[[nodiscard]] std::vector<std::pair<std::string, std::size_t>> decisionCounts(
    std::string_view logged);

}  // namespace tessarok::commands

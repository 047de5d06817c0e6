#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessarok::commands {

/// How many Characters have to be added, taken away, replaced or swapped with their neighbour to
/// make one word of the other.
[[nodiscard]] std::size_t distanceBetween(std::string_view one, std::string_view other);

/// The name that a person most likely meant, also when the word was typed in the Russian layout:
/// the nearest one, of several the one that begins alike, else the first. Absent when none is near:
/// a third of its Characters may be wrong.
[[nodiscard]] std::optional<std::string> nearestName(std::string_view wrong,
                                                     const std::vector<std::string>& names);

}  // namespace tessarok::commands

#pragma once

#include <optional>
#include <string_view>

namespace tessarok {

/// The list that keeps a word from being corrected, in words that a person understands; absent for
/// a word that is on none. `lower` is in lower case and composed. For explanations only: it may
/// wait for the lists. Main thread.
[[nodiscard]] std::optional<std::string_view> excludingListOf(std::string_view lower);

}  // namespace tessarok

#pragma once

#include <string>
#include <string_view>

namespace tessarok::measure {

/// The text as people type it: typewriter quotes, hyphens for dashes, three dots for an ellipsis,
/// plain spaces, one in a row.
[[nodiscard]] std::string asTyped(std::string_view text);

}  // namespace tessarok::measure

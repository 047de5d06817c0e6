#pragma once

#include <string>
#include <vector>

namespace tessarok::freedesktop {

/// What the enabled layouts lack for words to be moved between them, as a sentence; empty when
/// nothing. Main thread.
[[nodiscard]] std::string missingLayouts();

/// The same for the word data.
[[nodiscard]] std::string missingWordData();

/// Both, without the empty ones.
[[nodiscard]] std::vector<std::string> obstaclesToCorrection();

}  // namespace tessarok::freedesktop

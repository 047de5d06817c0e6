#pragma once

#include <string>
#include <vector>

#include "desktops/ibus/SourceList.h"

namespace tessarok::ibus {

/// What keeps words from being put right in GNOME's list of input sources, a sentence each: one of
/// the corrector's two is missing, or GNOME's own layouts of the two languages are in it besides,
/// which the corrector gets no keys of. Any thread.
[[nodiscard]] std::vector<std::string> obstaclesIn(const std::vector<SourceList::Source>& sources);

}  // namespace tessarok::ibus

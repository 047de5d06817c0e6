#pragma once

#include <string>
#include <vector>

#include "CorpusReport.h"
#include "Week.h"

namespace tessarok::measure {

/// The figures as a table, then the false fixes and the most frequent misses of every corpus, at
/// most `misses` of each.
[[nodiscard]] std::string textReport(const std::vector<CorpusReport>& reports,
                                     const Ceilings& ceilings, std::size_t misses);

}  // namespace tessarok::measure

#pragma once

#include <string>
#include <vector>

#include "CorpusReport.h"
#include "Week.h"

namespace tessarok::measure {

/// A page of its own, without scripts and without anything from elsewhere: a bar chart of every
/// figure, the table, and the lists of false fixes and misses (at most `misses` of each).
[[nodiscard]] std::string htmlReport(const std::vector<CorpusReport>& reports,
                                     const Ceilings& ceilings, std::size_t misses);

}  // namespace tessarok::measure

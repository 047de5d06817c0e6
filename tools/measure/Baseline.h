#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "CorpusReport.h"

namespace tessarok::measure {

/// The figures that must not get worse, by corpus.
[[nodiscard]] nlohmann::ordered_json baselineOf(const std::vector<CorpusReport>& reports);

/// Every figure that is worse than the recorded one, or has no record, in a sentence each.
[[nodiscard]] std::vector<std::string> worseThan(const nlohmann::ordered_json& baseline,
                                                 const std::vector<CorpusReport>& reports);

}  // namespace tessarok::measure

#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "CorpusReport.h"

namespace tessarok::measure {

/// The least repairs that the rules allow, by the names of the corpora (`--ceiling`).
using Ceilings = std::map<std::string, double>;

/// The repairs of a person's week in one language: texts of one occasion count alike, occasions by
/// their share (`shareOf`). Occasions without a text are left out.
struct Week {
  double repairs = 0;
  /// Of the same texts; absent unless there is one for each.
  std::optional<double> least;
};

/// Absent when there is no text of the language.
[[nodiscard]] std::optional<Week> weekOf(const std::vector<CorpusReport>& reports,
                                         const Ceilings& ceilings, Language language);

/// A week in which both languages are typed alike.
[[nodiscard]] Week bothOf(const Week& one, const Week& other);

/// The ceilings among figures that were written to a file. Throws std::runtime_error that names it.
[[nodiscard]] Ceilings readCeilings(const std::string& file);

}  // namespace tessarok::measure

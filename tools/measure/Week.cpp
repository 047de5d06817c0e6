#include "Week.h"

#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace tessarok::measure {

namespace {

/// The mean of what was added.
class Mean {
 public:
  void add(double value) {
    sum_ += value;
    ++count_;
  }
  [[nodiscard]] double value() const { return count_ == 0 ? 0 : sum_ / count_; }
  [[nodiscard]] bool isEmpty() const { return count_ == 0; }

 private:
  double sum_ = 0;
  double count_ = 0;
};

}  // namespace

std::optional<Week> weekOf(const std::vector<CorpusReport>& reports, const Ceilings& ceilings,
                           Language language) {
  double shares = 0;
  double repairs = 0;
  double least = 0;
  bool areAllKnown = true;
  bool hasProse = false;
  for (const auto occasion : kOccasions) {
    Mean now;
    Mean most;
    for (const auto& report : reports) {
      if (report.occasion != occasion || (report.language != language && !report.isCode)) continue;
      hasProse = hasProse || !report.isCode;
      now.add(report.repairs());
      const auto ceiling = ceilings.find(report.name);
      areAllKnown = areAllKnown && ceiling != ceilings.end();
      if (ceiling != ceilings.end()) most.add(ceiling->second);
    }
    if (now.isEmpty()) continue;
    shares += shareOf(occasion);
    repairs += shareOf(occasion) * now.value();
    least += shareOf(occasion) * most.value();
  }
  if (!hasProse) return std::nullopt;
  Week week{repairs / shares, std::nullopt};
  if (areAllKnown) week.least = least / shares;
  return week;
}

Week bothOf(const Week& one, const Week& other) {
  Week both{(one.repairs + other.repairs) / 2, std::nullopt};
  if (one.least && other.least) both.least = (*one.least + *other.least) / 2;
  return both;
}

Ceilings readCeilings(const std::string& file) {
  std::ifstream stream(file);
  if (!stream) throw std::runtime_error(file + ": cannot be read");
  Ceilings ceilings;
  try {
    for (const auto& report : nlohmann::json::parse(stream)) {
      ceilings[report.at("name").get<std::string>()] = report.at("repairs").get<double>();
    }
  } catch (const nlohmann::json::exception& error) {
    throw std::runtime_error(file + ": " + error.what());
  }
  return ceilings;
}

}  // namespace tessarok::measure

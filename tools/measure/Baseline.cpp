#include "Baseline.h"

#include <cmath>
#include <functional>
#include <nlohmann/json.hpp>
#include <sstream>

namespace tessarok::measure {

namespace {

using Json = nlohmann::ordered_json;

struct Figure {
  const char* name;
  bool smallerIsBetter;
  bool ofCode;
  std::function<double(const CorpusReport&)> value;
};

const std::vector<Figure>& figures() {
  static const std::vector<Figure> all = {
      {"falseFixesPer10000", true, true, &CorpusReport::falseFixesPer10000},
      {"lettersRight", false, false, &CorpusReport::lettersRight},
      {"oneLetterRight", false, false, &CorpusReport::oneLetterRightShare},
      {"firstRight", false, false, &CorpusReport::firstRightShare},
      {"secondRight", false, false, &CorpusReport::secondRightShare}};
  return all;
}

/// Figures are recorded with three decimals.
double rounded(double value) {
  return std::round(value * 1000) / 1000;
}

void compare(const Json& record, const CorpusReport& report, const Figure& figure,
             std::vector<std::string>& complaints) {
  const double now = rounded(figure.value(report));
  std::ostringstream complaint;
  if (!record.contains(figure.name)) {
    complaint << report.name << ": " << figure.name << " is not recorded";
    complaints.push_back(complaint.str());
    return;
  }
  const double before = record.at(figure.name).get<double>();
  if (figure.smallerIsBetter ? now <= before : now >= before) return;
  complaint << report.name << ": " << figure.name << " was " << before << " and is " << now;
  complaints.push_back(complaint.str());
}

}  // namespace

Json baselineOf(const std::vector<CorpusReport>& reports) {
  Json baseline = Json::object();
  for (const auto& report : reports) {
    for (const auto& figure : figures()) {
      if (report.isCode && !figure.ofCode) continue;
      baseline[report.name][figure.name] = rounded(figure.value(report));
    }
  }
  return baseline;
}

std::vector<std::string> worseThan(const Json& baseline, const std::vector<CorpusReport>& reports) {
  std::vector<std::string> complaints;
  for (const auto& report : reports) {
    const auto record = baseline.value(report.name, Json::object());
    for (const auto& figure : figures()) {
      if (report.isCode && !figure.ofCode) continue;
      compare(record, report, figure, complaints);
    }
  }
  return complaints;
}

}  // namespace tessarok::measure

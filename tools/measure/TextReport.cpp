#include "TextReport.h"

#include <iomanip>
#include <nlohmann/json.hpp>
#include <sstream>

namespace tessarok::measure {

namespace {

void addRow(std::ostringstream& out, const CorpusReport& report) {
  out << std::left << std::setw(14) << report.name << std::right << std::setw(9) << report.sentences
      << std::setw(9) << report.words << std::fixed << std::setprecision(2) << std::setw(12)
      << report.falseFixesPer10000();
  if (!report.isCode) {
    out << std::setw(12) << report.lettersRight() << std::setw(12) << report.oneLetterRightShare()
        << std::setw(11) << report.firstRightShare() << std::setw(11) << report.secondRightShare();
  }
  out << '\n';
}

void addMisses(std::ostringstream& out, const std::string& heading,
               const nlohmann::ordered_json& list) {
  out << heading << '\n';
  for (const auto& miss : list) {
    out << "  " << std::setw(6) << miss.at(2).get<std::size_t>() << "  "
        << miss.at(0).get<std::string>() << " -> " << miss.at(1).get<std::string>() << '\n';
  }
}

void addRules(std::ostringstream& out, const CorpusReport& report) {
  out << "  misses in the wrong layout by what the word is\n";
  for (const auto& [rule, counts] : report.missesByRule) {
    out << "  " << std::setw(6) << sumOf(counts) << "  " << describe(rule) << '\n';
  }
}

}  // namespace

std::string textReport(const std::vector<CorpusReport>& reports, std::size_t misses) {
  std::ostringstream out;
  out << "corpus        sentences    words  false fixes  letters %  one-letter %  first %   second "
         "%\n"
         "                               per 10,000 w.   (from the wrong layout)\n";
  for (const auto& report : reports)
    addRow(out, report);
  for (const auto& report : reports) {
    const auto json = toJson(report, misses);
    out << '\n' << report.title << '\n';
    addMisses(out, "  false fixes in the right layout", json.at("falseFixList"));
    if (report.isCode) continue;
    addRules(out, report);
    addMisses(out, "  misses in the wrong layout", json.at("missList"));
  }
  return out.str();
}

}  // namespace tessarok::measure

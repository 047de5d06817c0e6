#include "TextReport.h"

#include <algorithm>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <sstream>
#include <vector>

namespace tessarok::measure {

namespace {

void addRow(std::ostringstream& out, const CorpusReport& report, const Ceilings& ceilings) {
  out << std::left << std::setw(14) << report.name << std::right << std::setw(9) << report.sentences
      << std::setw(9) << report.words << std::fixed << std::setprecision(2) << std::setw(12)
      << report.falseFixesPer10000() << std::setw(9) << report.repairs();
  const auto ceiling = ceilings.find(report.name);
  if (ceiling == ceilings.end()) {
    out << std::setw(9) << "-";
  } else {
    out << std::setw(9) << ceiling->second;
  }
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

void addWeek(std::ostringstream& out, const char* title, const std::optional<Week>& week) {
  if (!week) return;
  out << title << std::setw(9) << week->repairs;
  if (week->least) {
    out << " where" << std::setw(9) << *week->least << " are possible, "
        << week->repairs / *week->least << " times as many";
  }
  out << '\n';
}

void addWeeks(std::ostringstream& out, const std::vector<CorpusReport>& reports,
              const Ceilings& ceilings) {
  const auto russian = weekOf(reports, ceilings, Language::russian);
  const auto english = weekOf(reports, ceilings, Language::english);
  if (russian || english) out << "\nrepairs in a person's week, per 10,000 words\n";
  addWeek(out, "  Russian ", russian);
  addWeek(out, "  English ", english);
  if (russian && english) addWeek(out, "  both    ", bothOf(*russian, *english));
}

/// What sentences begin with in every text of one language that people talk in.
void addFirstWords(std::ostringstream& out, const std::vector<CorpusReport>& reports,
                   Language language, std::size_t most) {
  FirstWords words;
  std::size_t sentences = 0;
  for (const auto& report : reports) {
    if (report.occasion != Occasion::talk || report.language != language) continue;
    sentences += report.sentences;
    for (const auto& [word, first] : report.firstWords) {
      words[word].times += first.times;
      words[word].right += first.right;
    }
  }
  std::vector<std::pair<std::string, FirstWord>> sorted(words.begin(), words.end());
  std::ranges::stable_sort(sorted, std::ranges::greater(),
                           [](const auto& entry) { return entry.second.times; });
  sorted.resize(std::min(sorted.size(), most));
  if (sorted.empty()) return;
  out << "\nfirst words of talk: share of the sentences %, right from the wrong layout %\n";
  for (const auto& [word, first] : sorted) {
    const auto percent = [](std::size_t part, std::size_t whole) {
      return 100 * static_cast<double>(part) / static_cast<double>(whole);
    };
    out << std::setw(8) << percent(first.times, sentences) << std::setw(8)
        << percent(first.right, first.times) << "  " << word << '\n';
  }
}

}  // namespace

std::string textReport(const std::vector<CorpusReport>& reports, const Ceilings& ceilings,
                       std::size_t misses) {
  std::ostringstream out;
  out << "corpus        sentences    words  false fixes  repairs possible  letters %  one-letter % "
         " "
         "first %   second %\n"
         "                               per 10,000 w.                   (from the wrong layout)\n";
  for (const auto& report : reports)
    addRow(out, report, ceilings);
  addWeeks(out, reports, ceilings);
  for (const auto language : {Language::russian, Language::english})
    addFirstWords(out, reports, language, misses);
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

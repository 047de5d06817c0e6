#include "HtmlReport.h"

#include <algorithm>
#include <functional>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <sstream>

#include "StyleSheet.h"

namespace tessarok::measure {

namespace {

constexpr const char* kHead = R"(<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Tessarok: what typing whole sentences shows</title>
<style>
)";
constexpr const char* kBody = R"(</style></head><body class="report">
<h1>What typing whole sentences shows</h1>
)";

/// One chart: a figure of every corpus that has it.
struct Chart {
  const char* title;
  /// Where the bars begin; shares near 100 could not be told apart from zero on.
  double from;
  double to;
  bool ofCode;
  std::function<double(const CorpusReport&)> figure;
};

std::string escaped(const std::string& text) {
  std::string html;
  for (const char byte : text) {
    if (byte == '<') {
      html += "&lt;";
    } else if (byte == '&') {
      html += "&amp;";
    } else {
      html += byte;
    }
  }
  return html;
}

std::string number(double value) {
  std::ostringstream out;
  out << std::fixed << std::setprecision(2) << value;
  return out.str();
}

void addChart(std::ostringstream& out, const Chart& chart,
              const std::vector<CorpusReport>& reports) {
  constexpr int kRow = 26;
  constexpr int kLabel = 340;  // pixels; the longest title has 44 characters
  constexpr double kWidth = 500;
  std::ostringstream bars;
  int rows = 0;
  for (const auto& report : reports) {
    if (report.isCode && !chart.ofCode) continue;
    const double value = chart.figure(report);
    const double part = std::clamp((value - chart.from) / (chart.to - chart.from), 0.0, 1.0);
    const int y = rows++ * kRow;
    bars << "<text x=\"" << kLabel - 8 << "\" y=\"" << y + 17 << "\" text-anchor=\"end\">"
         << escaped(report.title) << "</text><rect x=\"" << kLabel << "\" y=\"" << y + 4
         << "\" width=\"" << part * kWidth + 1 << "\" height=\"" << kRow - 8 << "\" class=\""
         << (report.language == Language::russian ? "russian" : "english") << "\"/><text x=\""
         << kLabel + part * kWidth + 8 << "\" y=\"" << y + 17 << "\">" << number(value)
         << "</text>\n";
  }
  out << "<h2>" << chart.title << "</h2>\n<svg width=\"940\" height=\"" << rows * kRow
      << "\" font-size=\"13\" role=\"img\">\n"
      << bars.str() << "</svg>\n";
}

void addTable(std::ostringstream& out, const std::vector<CorpusReport>& reports,
              const Ceilings& ceilings) {
  out << "<h2>All figures</h2>\n<table><tr><th>text</th><th>sentences</th><th>words</th>"
         "<th>false fixes per 10,000 words</th><th>repairs per 10,000 words</th>"
         "<th>possible</th><th>letters right, %</th>"
         "<th>one-letter words right, %</th><th>first word right, %</th>"
         "<th>first or second right, %</th></tr>\n";
  for (const auto& report : reports) {
    out << "<tr><td>" << escaped(report.title) << "</td><td>" << report.sentences << "</td><td>"
        << report.words << "</td><td>" << number(report.falseFixesPer10000()) << "</td><td>"
        << number(report.repairs()) << "</td><td>";
    const auto ceiling = ceilings.find(report.name);
    out << (ceiling == ceilings.end() ? std::string("–") : number(ceiling->second)) << "</td>";
    if (!report.isCode) {
      out << "<td>" << number(report.lettersRight()) << "</td><td>"
          << number(report.oneLetterRightShare()) << "</td><td>" << number(report.firstRightShare())
          << "</td><td>" << number(report.secondRightShare()) << "</td>";
    }
    out << "</tr>\n";
  }
  out << "</table>\n";
}

void addWeek(std::ostringstream& out, const char* title, const std::optional<Week>& week) {
  if (!week) return;
  out << "<p>Repairs in a person's week, " << title << ": " << number(week->repairs);
  if (week->least) out << " where " << number(*week->least) << " are possible";
  out << "</p>\n";
}

void addWeeks(std::ostringstream& out, const std::vector<CorpusReport>& reports,
              const Ceilings& ceilings) {
  const auto russian = weekOf(reports, ceilings, Language::russian);
  const auto english = weekOf(reports, ceilings, Language::english);
  addWeek(out, "Russian", russian);
  addWeek(out, "English", english);
  if (russian && english) addWeek(out, "both languages alike", bothOf(*russian, *english));
}

void addMisses(std::ostringstream& out, const char* heading, const nlohmann::ordered_json& list) {
  out << "<h3>" << heading << "</h3>\n<div class=\"lists\">\n";
  for (const auto& miss : list) {
    out << "<p>" << miss.at(2).get<std::size_t>() << " × " << escaped(miss.at(0).get<std::string>())
        << " → " << escaped(miss.at(1).get<std::string>()) << "</p>\n";
  }
  out << "</div>\n";
}

void addRules(std::ostringstream& out, const CorpusReport& report) {
  out << "<h3>Misses by what the word is</h3>\n<table>\n";
  for (const auto& [rule, counts] : report.missesByRule) {
    out << "<tr><td>" << describe(rule) << "</td><td>" << sumOf(counts) << "</td></tr>\n";
  }
  out << "</table>\n";
}

}  // namespace

std::string htmlReport(const std::vector<CorpusReport>& reports, const Ceilings& ceilings,
                       std::size_t misses) {
  double mostFalseFixes = 1;
  for (const auto& report : reports) {
    mostFalseFixes = std::max(mostFalseFixes, report.falseFixesPer10000());
  }
  const std::vector<Chart> charts = {
      {"False fixes per 10,000 words, right layout", 0, mostFalseFixes, true,
       &CorpusReport::falseFixesPer10000},
      {"Words of two letters or more right, wrong layout at the start, % (from 90)", 90, 100, false,
       &CorpusReport::lettersRight},
      {"One-letter words right, wrong layout at the start, %", 0, 100, false,
       &CorpusReport::oneLetterRightShare},
      {"Sentences whose first word of two letters or more is right, % (from 50)", 50, 100, false,
       &CorpusReport::firstRightShare},
      {"Sentences whose first or second such word is right, % (from 80)", 80, 100, false,
       &CorpusReport::secondRightShare}};
  std::ostringstream out;
  out << kHead << kStyleSheet << kBody;
  for (const auto& chart : charts)
    addChart(out, chart, reports);
  addTable(out, reports, ceilings);
  addWeeks(out, reports, ceilings);
  for (const auto& report : reports) {
    const auto json = toJson(report, misses);
    out << "<h2>" << escaped(report.title) << "</h2>\n";
    addMisses(out, "False fixes, right layout", json.at("falseFixList"));
    if (report.isCode) continue;
    addRules(out, report);
    addMisses(out, "Misses, wrong layout", json.at("missList"));
  }
  out << "</body></html>\n";
  return out.str();
}

}  // namespace tessarok::measure

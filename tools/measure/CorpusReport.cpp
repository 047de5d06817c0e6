#include "CorpusReport.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

namespace tessarok::measure {

namespace {

using Json = nlohmann::ordered_json;

void count(const std::vector<Miss>& misses, MissCounts& counts) {
  for (const auto& miss : misses)
    ++counts[{miss.meant, miss.shown}];
}

double share(std::size_t part, std::size_t whole, double of) {
  return whole == 0 ? of : of * static_cast<double>(part) / static_cast<double>(whole);
}

Json missesJson(const MissCounts& counts, std::size_t most) {
  std::vector<std::pair<std::pair<std::string, std::string>, std::size_t>> sorted(counts.begin(),
                                                                                  counts.end());
  std::ranges::stable_sort(sorted, std::ranges::greater(),
                           [](const auto& miss) { return miss.second; });
  sorted.resize(std::min(sorted.size(), most));
  Json list = Json::array();
  for (const auto& [miss, times] : sorted)
    list.push_back({miss.first, miss.second, times});
  return list;
}

Json firstWordsJson(const FirstWords& words, std::size_t most) {
  std::vector<std::pair<std::string, FirstWord>> sorted(words.begin(), words.end());
  std::ranges::stable_sort(sorted, std::ranges::greater(),
                           [](const auto& entry) { return entry.second.times; });
  sorted.resize(std::min(sorted.size(), most));
  Json list = Json::array();
  for (const auto& [word, first] : sorted)
    list.push_back({word, first.times, first.right});
  return list;
}

MissCounts missesFromJson(const Json& list) {
  MissCounts counts;
  for (const auto& miss : list) {
    counts[{miss.at(0).get<std::string>(), miss.at(1).get<std::string>()}] +=
        miss.at(2).get<std::size_t>();
  }
  return counts;
}

}  // namespace

std::size_t sumOf(const MissCounts& counts) {
  std::size_t sum = 0;
  for (const auto& [miss, times] : counts)
    sum += times;
  return sum;
}

void CorpusReport::addRightLayout(const SentenceScore& score) {
  ++sentences;
  words += score.words;
  count(score.changed, falseFixes);
}

void CorpusReport::addWrongLayout(const SentenceScore& score) {
  longWords += score.longWords;
  longRight += score.longRight;
  oneLetterWords += score.oneLetterWords;
  oneLetterRight += score.oneLetterRight;
  if (score.firstRight) ++firstRight;
  if (score.secondRight) ++secondRight;
  if (!score.firstWord.empty()) {
    auto& first = firstWords[score.firstWord];
    ++first.times;
    if (score.firstRight) ++first.right;
  }
  count(score.misses, misses);
  for (const auto& miss : score.misses)
    ++missesByRule[miss.rule][{miss.meant, miss.shown}];
}

void CorpusReport::add(const CorpusReport& part) {
  sentences += part.sentences;
  words += part.words;
  longWords += part.longWords;
  longRight += part.longRight;
  oneLetterWords += part.oneLetterWords;
  oneLetterRight += part.oneLetterRight;
  firstRight += part.firstRight;
  secondRight += part.secondRight;
  for (const auto& [word, first] : part.firstWords) {
    firstWords[word].times += first.times;
    firstWords[word].right += first.right;
  }
  for (const auto& [miss, times] : part.falseFixes)
    falseFixes[miss] += times;
  for (const auto& [miss, times] : part.misses)
    misses[miss] += times;
  for (const auto& [rule, counts] : part.missesByRule) {
    for (const auto& [miss, times] : counts)
      missesByRule[rule][miss] += times;
  }
}

std::size_t CorpusReport::falseFixCount() const {
  return sumOf(falseFixes);
}

double CorpusReport::falseFixesPer10000() const {
  return words == 0 ? 0 : share(falseFixCount(), words, 10000);
}

double CorpusReport::lettersRight() const {
  return share(longRight, longWords, 100);
}

double CorpusReport::oneLetterRightShare() const {
  return share(oneLetterRight, oneLetterWords, 100);
}

double CorpusReport::firstRightShare() const {
  return share(firstRight, sentences, 100);
}

double CorpusReport::secondRightShare() const {
  return share(secondRight, sentences, 100);
}

double CorpusReport::repairs() const {
  constexpr double kFalseFix = 3;
  constexpr double kWrongStarts = 0.1;
  const double wrong = isCode ? 0 : share(longWords - longRight, longWords, 10000);
  return kFalseFix * falseFixesPer10000() + (longWords == 0 ? 0 : wrong * kWrongStarts);
}

Json toJson(const CorpusReport& report, std::size_t misses) {
  Json json = {{"name", report.name},
               {"title", report.title},
               {"language", report.isCode                          ? "code"
                            : report.language == Language::russian ? "ru"
                                                                   : "en"},
               {"sentences", report.sentences},
               {"words", report.words},
               {"falseFixes", report.falseFixCount()},
               {"falseFixesPer10000", report.falseFixesPer10000()},
               {"repairs", report.repairs()}};
  if (report.occasion) json["for"] = nameOf(*report.occasion);
  if (!report.isCode) {
    json.update({{"longWords", report.longWords},
                 {"longRight", report.longRight},
                 {"lettersRight", report.lettersRight()},
                 {"oneLetterWords", report.oneLetterWords},
                 {"oneLetterRight", report.oneLetterRight},
                 {"firstRight", report.firstRight},
                 {"firstRightShare", report.firstRightShare()},
                 {"secondRight", report.secondRight},
                 {"secondRightShare", report.secondRightShare()}});
  }
  json["falseFixList"] = missesJson(report.falseFixes, misses);
  if (report.isCode) return json;
  json["firstWordList"] = firstWordsJson(report.firstWords, misses);
  json["missList"] = missesJson(report.misses, misses);
  for (const auto& [rule, counts] : report.missesByRule) {
    json["missRules"][nameOf(rule)] = {{"misses", sumOf(counts)},
                                       {"list", missesJson(counts, misses)}};
  }
  return json;
}

CorpusReport reportFromJson(const Json& json) {
  CorpusReport report;
  report.name = json.at("name").get<std::string>();
  report.title = json.at("title").get<std::string>();
  report.language = json.at("language") == "ru" ? Language::russian : Language::english;
  report.isCode = json.at("language") == "code";
  if (json.contains("for")) report.occasion = occasionNamed(json["for"].get<std::string>());
  report.sentences = json.at("sentences").get<std::size_t>();
  report.words = json.at("words").get<std::size_t>();
  report.falseFixes = missesFromJson(json.at("falseFixList"));
  if (report.isCode) return report;
  report.longWords = json.at("longWords").get<std::size_t>();
  report.longRight = json.at("longRight").get<std::size_t>();
  report.oneLetterWords = json.at("oneLetterWords").get<std::size_t>();
  report.oneLetterRight = json.at("oneLetterRight").get<std::size_t>();
  report.firstRight = json.at("firstRight").get<std::size_t>();
  report.secondRight = json.at("secondRight").get<std::size_t>();
  for (const auto& first : json.at("firstWordList")) {
    report.firstWords[first.at(0).get<std::string>()] = {first.at(1).get<std::size_t>(),
                                                         first.at(2).get<std::size_t>()};
  }
  report.misses = missesFromJson(json.at("missList"));
  for (const auto rule : kMissRules) {
    if (!json.contains("missRules") || !json["missRules"].contains(nameOf(rule))) continue;
    report.missesByRule[rule] = missesFromJson(json["missRules"][nameOf(rule)].at("list"));
  }
  return report;
}

}  // namespace tessarok::measure

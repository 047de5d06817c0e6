// Types sentences key by key through the whole program and reports how they come out. Exit status:
// 0 done, 1 a figure is worse than the recorded one, 2 a wrong command line or an input or output
// that cannot be used.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "Baseline.h"
#include "CeilingData.h"
#include "Half.h"
#include "HtmlReport.h"
#include "Measurement.h"
#include "Progress.h"
#include "TextReport.h"
#include "desktops/virtual/TemporaryDirectory.h"

namespace {

using namespace tessarok::measure;
using Json = nlohmann::ordered_json;

constexpr int kDone = 0;
constexpr int kWorse = 1;
constexpr int kUnusable = 2;

struct Options {
  std::filesystem::path corpora = "tools/measure/corpora.json";
  std::filesystem::path resources = "Resources";
  std::vector<std::string> only;
  std::string half = "judging";
  std::size_t words = 0;
  std::size_t misses = 40;
  std::size_t processes = std::max(1U, std::thread::hardware_concurrency());
  std::filesystem::path json;
  std::filesystem::path html;
  std::filesystem::path baseline;
  std::filesystem::path writeBaseline;
  std::filesystem::path writeSentences;
  std::vector<std::string> texts;
  std::string pauseKey = "grave";
  bool ceiling = false;
  std::filesystem::path ceilings;
};

void declareOptions(CLI::App& app, Options& options) {
  app.add_option("--corpora", options.corpora, "The list of corpora")->capture_default_str();
  app.add_option("--resources", options.resources, "Directory of the word data")
      ->capture_default_str();
  app.add_option("--only", options.only, "Names of the corpora to measure; all without it");
  app.add_option("--text", options.texts,
                 "Measure this file instead of the corpora: ru:FILE, en:FILE or code:FILE");
  app.add_flag("--ceiling", options.ceiling,
               "With data made of the sentences themselves: the best that the rules allow");
  app.add_option("--ceilings", options.ceilings,
                 "Show the best figures beside, from a file written with --ceiling --json");
  app.add_option("--half", options.half,
                 "Which sentences: judging, making, all, or the unseen third that only some "
                 "corpora have")
      ->capture_default_str()
      ->check(CLI::IsMember({"judging", "making", "unseen", "all"}));
  app.add_option("--pause-key", options.pauseKey, "The setting pauseKey of the one who types")
      ->capture_default_str()
      ->check(CLI::IsMember({"grave", "english-only", "section", "none"}));
  app.add_option("--words", options.words, "About so many words of each corpus; 0 for all")
      ->capture_default_str();
  app.add_option("--misses", options.misses, "Longest list of misses")->capture_default_str();
  app.add_option("--processes", options.processes, "Processes to type with")
      ->capture_default_str()
      ->check(CLI::Range(1, 256));
  app.add_option("--json", options.json, "Write the figures to this file");
  app.add_option("--html", options.html, "Write a page with charts to this file");
  app.add_option("--baseline", options.baseline, "Fail when a figure is worse than in this file");
  app.add_option("--write-baseline", options.writeBaseline, "Record the figures in this file");
  app.add_option("--write-sentences", options.writeSentences,
                 "Write the chosen sentences to a directory, a file for each corpus, and stop");
}

void writeFile(const std::filesystem::path& file, const std::string& content) {
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  stream << content;
  stream.close();
  if (!stream) throw std::runtime_error(file.string() + ": cannot be written");
}

bool isOfPart(std::string_view sentence, const Corpus& corpus, const std::string& part) {
  const bool isUnseen = corpus.hasUnseenThird && isOfUnseenThird(sentence);
  if (isUnseen || part == "unseen") return isUnseen && part == "unseen";
  return halfOf(sentence) == halfNamed(part);
}

std::vector<Sentence> chosenSentences(const Corpus& corpus, const Options& options) {
  auto sentences = sentencesOf(corpus);
  if (options.half != "all") {
    std::erase_if(sentences,
                  [&](const Sentence& s) { return !isOfPart(s.text, corpus, options.half); });
  }
  if (options.words == 0) return sentences;
  std::size_t words = 0;
  for (const auto& sentence : sentences) {
    words += 1 + static_cast<std::size_t>(std::ranges::count(sentence.text, ' '));
  }
  if (words <= options.words) return sentences;
  // Evenly from the whole corpus, which is made of files of different kinds.
  std::vector<Sentence> some;
  std::size_t credit = 0;
  for (auto& sentence : sentences) {
    credit += options.words;
    if (credit < words) continue;
    credit -= words;
    some.push_back(std::move(sentence));
  }
  return some;
}

Task taskOfText(const std::string& text, const Options& options) {
  const auto colon = text.find(':');
  const auto language = text.substr(0, colon);
  const bool isKnown = language == "ru" || language == "en" || language == "code";
  if (!isKnown || colon == std::string::npos) {
    throw std::runtime_error("--text needs ru:FILE, en:FILE or code:FILE, not " + text);
  }
  const auto corpus = textFile(language, text.substr(colon + 1));
  return {corpus, chosenSentences(corpus, options)};
}

std::vector<Task> makeTasks(const Options& options) {
  std::vector<Task> tasks;
  for (const auto& text : options.texts)
    tasks.push_back(taskOfText(text, options));
  if (!tasks.empty()) return tasks;
  for (const auto& corpus : readCorpora(options.corpora)) {
    const bool isWanted =
        options.only.empty() || std::ranges::find(options.only, corpus.name) != options.only.end();
    if (!isWanted || (options.half == "unseen" && !corpus.hasUnseenThird)) continue;
    tasks.push_back({corpus, chosenSentences(corpus, options)});
  }
  if (tasks.empty()) throw std::runtime_error("there is no corpus of that name");
  return tasks;
}

int writeSentences(const std::vector<Task>& tasks, const std::filesystem::path& directory) {
  std::filesystem::create_directories(directory);
  for (const auto& task : tasks) {
    std::string content;
    for (const auto& sentence : task.sentences)
      content += sentence.text + "\n";
    writeFile(directory / (task.corpus.name + ".txt"), content);
  }
  return kDone;
}

int compareWithBaseline(const std::vector<CorpusReport>& reports,
                        const std::filesystem::path& file) {
  std::ifstream stream(file);
  if (!stream) throw std::runtime_error(file.string() + ": cannot be read");
  const auto complaints = worseThan(Json::parse(stream), reports);
  for (const auto& complaint : complaints)
    std::cerr << "worse: " << complaint << '\n';
  return complaints.empty() ? kDone : kWorse;
}

SentenceTypist::Setup setupWith(const std::filesystem::path& resources, const Options& options) {
  return {resources, tessarok::xkb::PauseKey::named(options.pauseKey).value()};
}

std::vector<CorpusReport> measureAll(const std::vector<Task>& tasks, const Options& options) {
  Progress progress;
  return measure(tasks, setupWith(options.resources, options), options.processes,
                 [&](std::size_t done, std::size_t all) { progress.show(done, all); });
}

/// Every corpus with data of its own.
std::vector<CorpusReport> measureCeilings(const std::vector<Task>& tasks, const Options& options) {
  std::vector<CorpusReport> reports;
  for (const auto& task : tasks) {
    const tessarok::virtualdesktop::TemporaryDirectory data;
    writeCeilingData(task.sentences, task.corpus.language, options.resources, data.path());
    Progress progress;
    auto report = measure({task}, setupWith(data.path(), options), options.processes,
                          [&](std::size_t done, std::size_t all) { progress.show(done, all); });
    reports.push_back(std::move(report.front()));
  }
  return reports;
}

int run(const Options& options) {
  const auto tasks = makeTasks(options);
  if (!options.writeSentences.empty()) return writeSentences(tasks, options.writeSentences);
  const auto reports =
      options.ceiling ? measureCeilings(tasks, options) : measureAll(tasks, options);
  const auto ceilings =
      options.ceilings.empty() ? Ceilings() : readCeilings(options.ceilings.string());
  std::cout << textReport(reports, ceilings, options.misses);
  if (!options.json.empty()) {
    Json all = Json::array();
    for (const auto& report : reports)
      all.push_back(toJson(report, options.misses));
    writeFile(options.json, all.dump(1) + "\n");
  }
  if (!options.html.empty()) writeFile(options.html, htmlReport(reports, ceilings, options.misses));
  if (!options.writeBaseline.empty()) {
    writeFile(options.writeBaseline, baselineOf(reports).dump(2) + "\n");
  }
  return options.baseline.empty() ? kDone : compareWithBaseline(reports, options.baseline);
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  CLI::App app("Types sentences through Tessarok and reports how they come out",
               "tessarok-measure");
  declareOptions(app, options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kDone : kUnusable;
  }
  try {
    return run(options);
  } catch (const std::exception& error) {
    std::cerr << "tessarok-measure: " << error.what() << '\n';
    return kUnusable;
  }
}

// Is this a word? The dictionary beside a hash set of the same words and beside a spelling
// library, on the same random words of the Russian list; and how fast the list is checked.
//
// usage: tessarok_membership_bench [BENCHMARK OPTION…]

#include <algorithm>
#include <benchmark/benchmark.h>
#include <fstream>
#include <hunspell.hxx>
#include <iostream>
#include <memory>
#include <random>
#include <string>
#include <unordered_set>
#include <vector>

#include "desktops/terminal/TerminalDesktop.h"
#include "platform/Desktop.h"
#include "words/Dict.h"
#include "words/DictFile.h"

namespace {

using namespace tessarok;

constexpr std::size_t kSample = 100'000;
constexpr const char* kSpelling = "/usr/share/hunspell/ru_RU";

std::vector<std::string> wordsOf(std::string_view list) {
  std::vector<std::string> words;
  while (!list.empty()) {
    const auto end = list.find('\n');
    words.emplace_back(list.substr(0, end));
    if (end == std::string_view::npos) break;
    list.remove_prefix(end + 1);
  }
  return words;
}

/// Every benchmark asks for the same words in the same order.
std::vector<std::string> sample(std::vector<std::string> words) {
  std::mt19937 random(1);
  std::shuffle(words.begin(), words.end(), random);
  words.resize(std::min(words.size(), kSample));
  return words;
}

template <typename Contains>
void ask(benchmark::State& state, const std::vector<std::string>& words, Contains contains) {
  std::size_t next = 0;
  std::size_t found = 0;
  for ([[maybe_unused]] auto iteration : state) {
    found += contains(words[next]) ? 1 : 0;
    next = next + 1 == words.size() ? 0 : next + 1;
  }
  state.counters["found"] = static_cast<double>(found) / static_cast<double>(state.iterations());
}

void check(benchmark::State& state, std::string_view list, Language language) {
  for ([[maybe_unused]] auto iteration : state) {
    benchmark::DoNotOptimize(DictFile::findFault(list, language).has_value());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(list.size()));
}

}  // namespace

int main(int argc, char** argv) {
  terminal::TerminalDesktop desktop(std::nullopt);
  platform::setDesktop(desktop);
  if (!Dict::ru().isAvailable() || !Dict::en().isAvailable()) {
    std::cerr << "the word data are missing; run make data\n";
    return 2;
  }
  const std::string spelling = kSpelling;
  if (!std::ifstream(spelling + ".dic")) {
    std::cerr << "the spelling dictionary " << spelling << ".dic is missing\n";
    return 2;
  }
  auto words = wordsOf(Dict::ru().data());
  const auto asked = sample(words);
  const std::unordered_set<std::string> set(words.begin(), words.end());
  words = {};
  Hunspell hunspell((spelling + ".aff").c_str(), (spelling + ".dic").c_str());

  const auto name = [](const char* what) { return std::string("membership/") + what; };
  benchmark::RegisterBenchmark(name("dictionary").c_str(), [&](benchmark::State& state) {
    ask(state, asked, [](const std::string& word) { return Dict::ru().contains(word); });
  });
  benchmark::RegisterBenchmark(name("hash_set").c_str(), [&](benchmark::State& state) {
    ask(state, asked, [&](const std::string& word) { return set.contains(word); });
  });
  benchmark::RegisterBenchmark(name("hunspell").c_str(), [&](benchmark::State& state) {
    ask(state, asked, [&](const std::string& word) { return hunspell.spell(word); });
  });
  // Two threads share the work, so that what one core does is in the time of both.
  benchmark::RegisterBenchmark("check/russian", [](benchmark::State& state) {
    check(state, Dict::ru().data(), Language::russian);
  })->MeasureProcessCPUTime();
  benchmark::RegisterBenchmark("check/english", [](benchmark::State& state) {
    check(state, Dict::en().data(), Language::english);
  })->MeasureProcessCPUTime();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

// What one key costs: through `KeyTap::handle` alone, on events made beforehand, so that the
// virtual desktop's own cost is not counted; and what one decision costs.
//
// The word data are the real ones, found as the program finds them.

#include <array>
#include <benchmark/benchmark.h>
#include <iostream>
#include <string>
#include <vector>

#include "desktops/virtual/Session.h"
#include "typing/KeyCodes.h"
#include "typing/KeyTap.h"
#include "words/Detector.h"
#include "words/Dict.h"

namespace {

using namespace tessarok;
using virtualdesktop::KeyTable;
using virtualdesktop::VirtualEvent;

/// A tap position that takes everything and delivers nothing.
class NullProxy final : public platform::EventTapProxy {
 public:
  void post(const platform::Event& event) override { benchmark::DoNotOptimize(&event); }
};

VirtualEvent keyDown(char32_t character) {
  VirtualEvent event;
  const auto stroke = KeyTable::english().strokeFor(character);
  event.code = stroke ? stroke->code : keyCodes::space;
  event.payload = std::u16string(1, static_cast<char16_t>(character));
  return event;
}

void press(NullProxy& proxy, VirtualEvent& event) {
  benchmark::DoNotOptimize(KeyTap::shared().handle(&proxy, platform::EventType::keyDown, &event));
}

/// A letter and the Backspace that takes it back: no word ever ends.
void letterKeyAndBackspace(benchmark::State& state) {
  NullProxy proxy;
  auto letter = keyDown(U'h');
  VirtualEvent backspace;
  backspace.code = keyCodes::backspace;
  for ([[maybe_unused]] auto iteration : state) {
    press(proxy, letter);
    press(proxy, backspace);
  }
  state.SetItemsProcessed(state.iterations() * 2);
}

/// A whole word that stays as typed, boundary included.
void wordLeftAsTyped(benchmark::State& state) {
  NullProxy proxy;
  std::vector<VirtualEvent> events;
  for (const char32_t c : std::u32string(U"keyboard "))
    events.push_back(keyDown(c));
  for ([[maybe_unused]] auto iteration : state) {
    for (auto& event : events)
      press(proxy, event);
  }
}

void decide(benchmark::State& state, const std::string& word) {
  for ([[maybe_unused]] auto iteration : state) {
    benchmark::DoNotOptimize(Detector::decide(word, 0, 0));
  }
}

void dictionaryLookup(benchmark::State& state) {
  const std::array<std::string, 4> words = {"привет", "клавиатура", "несуществующееслово", "ёлка"};
  std::size_t next = 0;
  for ([[maybe_unused]] auto iteration : state) {
    benchmark::DoNotOptimize(Dict::ru().contains(words[next]));
    next = (next + 1) % words.size();
  }
}

void registerAll() {
  benchmark::RegisterBenchmark("letter_and_backspace", letterKeyAndBackspace);
  benchmark::RegisterBenchmark("word_left_as_typed", wordLeftAsTyped);
  const std::pair<const char*, std::string> decisions[] = {
      {"decide/english_word_left", "keyboard"},
      {"decide/russian_word_converted", "rkfdbfnehf"},
      {"decide/english_word_converted", "лунищфкв"},
      {"decide/unknown_word_with_comma", "frobnicate,"},
      {"decide/64_characters_and_10_punctuation_keys", std::string(64, 'q') + ",.;',.;',."},
  };
  for (const auto& [name, word] : decisions) {
    benchmark::RegisterBenchmark(name, [word = word](benchmark::State& s) { decide(s, word); });
  }
  benchmark::RegisterBenchmark("dictionary_lookup", dictionaryLookup);
}

}  // namespace

int main(int argc, char** argv) {
  virtualdesktop::Session session(std::nullopt, std::nullopt);
  session.launch();
  if (!Dict::en().isAvailable() || !Dict::ru().isAvailable()) {
    std::cerr << "the word data are missing; run make data\n";
    return 2;
  }
  registerAll();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

#include "commands/ExplainCommand.h"

#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>

#include "commands/Input.h"
#include "commands/WordData.h"
#include "desktops/virtual/TemporaryDirectory.h"
#include "desktops/virtual/VirtualDesktop.h"
#include "text/Text.h"
#include "words/BuiltinPacks.h"
#include "words/Detector.h"
#include "words/IgnoreList.h"
#include "words/LayoutMap.h"
#include "words/ListQueue.h"
#include "words/Proto.h"
#include "words/UserDict.h"

namespace tessarok::commands {

namespace {

/// Everything that the program thinks of one word.
struct Explanation {
  std::string word;
  std::optional<Detector::Decision> decision;
  /// The whole new word with the kept tail, by the layouts alone.
  std::optional<std::string> converted;
  std::optional<std::string> shiftLag;
  bool shortRuCandidate = false;
  bool shortEnCandidate = false;
  std::vector<std::string> steps;
};

Explanation explainWord(std::string_view word, const ExplainOptions& options) {
  DecisionTrace trace;
  Explanation explanation;
  explanation.word = word;
  explanation.decision = Detector::decide(word, options.ruStreak, options.enStreak, &trace);
  if (const auto& decision = explanation.decision) {
    explanation.converted =
        LayoutMap::convert(text::withoutLast(word, decision->trim), decision->from());
    explanation.converted->append(text::last(word, decision->trim));
  }
  explanation.shiftLag = Detector::fixShiftLag(word);
  explanation.shortRuCandidate = Detector::isShortRuCandidate(word);
  explanation.shortEnCandidate = Detector::isShortEnCandidate(word);
  explanation.steps = trace.steps();
  return explanation;
}

nlohmann::json orNull(const std::optional<std::string>& value) {
  return value ? nlohmann::json(*value) : nlohmann::json();
}

void printJson(const Explanation& explanation) {
  nlohmann::json decision;
  if (const auto& made = explanation.decision) {
    decision = {{"fromRu", made->from() == Language::russian},
                {"confidence", Detector::name(made->confidence)},
                {"trim", made->trim}};
  }
  const nlohmann::json object = {{"word", explanation.word},
                                 {"decision", std::move(decision)},
                                 {"converted", orNull(explanation.converted)},
                                 {"shiftLag", orNull(explanation.shiftLag)},
                                 {"shortRuCandidate", explanation.shortRuCandidate},
                                 {"shortEnCandidate", explanation.shortEnCandidate},
                                 {"steps", explanation.steps}};
  std::cout << object.dump() << '\n';
}

std::string verdict(const Explanation& explanation) {
  if (const auto& decision = explanation.decision) {
    std::string text = explanation.word + " → " + *explanation.converted;
    text += decision->confidence == Detector::Confidence::high
                ? ", and the layout is switched"
                : ", and the layout stays (the word is in no dictionary)";
    return text;
  }
  if (explanation.shiftLag) {
    return explanation.word + " → " + *explanation.shiftLag + ", Shift was held too long";
  }
  std::string text = explanation.word + " stays as typed";
  if (explanation.shortRuCandidate) text += ", unless the next word turns out to be Russian";
  if (explanation.shortEnCandidate) text += ", unless the next word turns out to be English";
  return text;
}

void printText(const Explanation& explanation) {
  std::cout << verdict(explanation) << '\n';
  for (const auto& step : explanation.steps)
    std::cout << "    " << step << '\n';
}

void explainAll(std::string_view lines, const ExplainOptions& options) {
  while (!lines.empty()) {
    const auto end = lines.find('\n');
    auto word = lines.substr(0, end);
    lines = end == std::string_view::npos ? std::string_view() : lines.substr(end + 1);
    if (word.ends_with('\r')) word.remove_suffix(1);
    const auto explanation = explainWord(word, options);
    options.json ? printJson(explanation) : printText(explanation);
  }
}

/// As the program loads them when it starts.
void loadLists(virtualdesktop::VirtualDesktop& desktop) {
  IgnoreList::load(IgnoreList::Recovery::inMemory);
  UserDict::seedIfMissing();
  UserDict::reload();
  BuiltinPacks::rebuild();
  IgnoreList::flush();
  ListQueue::drain();
  for (const auto& message : desktop.systemLog().take())
    std::cerr << message << '\n';
}

}  // namespace

int runExplain(const Options& options, const ExplainOptions& explain) {
  // The person's lists and switches are copied as `type` does it; no key is watched.
  const virtualdesktop::TemporaryDirectory home;
  virtualdesktop::VirtualDesktop desktop(home.path(), options.resources);
  platform::setDesktop(desktop);
  requireWordData(explain.lists == Lists::none ? Packs::unused : Packs::needed);
  Proto::load();
  copyLists(desktop, explain.lists);
  loadLists(desktop);
  std::ios::sync_with_stdio(false);
  if (explain.words == std::vector<std::string>{"-"}) {
    explainAll(readStandardInput(), explain);
    return 0;
  }
  for (const auto& word : explain.words)
    requireUtf8(word, "the word");
  for (const auto& word : explain.words) {
    const auto explanation = explainWord(word, explain);
    explain.json ? printJson(explanation) : printText(explanation);
  }
  return 0;
}

}  // namespace tessarok::commands

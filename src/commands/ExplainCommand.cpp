#include "commands/ExplainCommand.h"

#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>

#include "commands/Input.h"
#include "commands/WordData.h"
#include "desktops/posix/Translation.h"
#include "desktops/virtual/TemporaryDirectory.h"
#include "desktops/virtual/VirtualDesktop.h"
#include "words/BuiltinPacks.h"
#include "words/Explanation.h"
#include "words/IgnoreList.h"
#include "words/ListQueue.h"
#include "words/Proto.h"
#include "words/UserDict.h"

namespace tessarok::commands {

namespace {

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
    const auto explanation = Explanation::of(word, options.ruStreak, options.enStreak);
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
    requireUtf8(word, posix::translated("the word"));
  for (const auto& word : explain.words) {
    const auto explanation = Explanation::of(word, explain.ruStreak, explain.enStreak);
    explain.json ? printJson(explanation) : printText(explanation);
  }
  return 0;
}

}  // namespace tessarok::commands

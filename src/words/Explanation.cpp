#include "words/Explanation.h"

#include "text/Text.h"
#include "words/LayoutMap.h"

namespace tessarok {

Explanation Explanation::of(std::string_view word, std::int64_t ruStreak, std::int64_t enStreak) {
  DecisionTrace trace;
  Explanation explanation;
  explanation.word = word;
  explanation.decision = Detector::decide(word, ruStreak, enStreak, &trace);
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

}  // namespace tessarok

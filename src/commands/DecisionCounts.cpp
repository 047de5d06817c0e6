#include "commands/DecisionCounts.h"

#include <algorithm>
#include <array>

namespace tessarok::commands {

namespace {

/// What a line of the log begins with, and how it is called in a report.
struct Kind {
  std::string_view start;
  std::string_view name;
};

/// Of a line that comes with another one, which is counted.
constexpr std::string_view kSaid = "";

constexpr auto kKinds = std::to_array<Kind>({
    {"tap started", "starts"},
    {"eval ", "words ended"},
    {"  decided fromRu=true", "decided: to English"},
    {"  decided fromRu=false", "decided: to Russian"},
    {"  decision=leave", "decided: left alone"},
    {"  decide=nil", kSaid},
    {"  shift-lag correction", "second capitals put right"},
    {"  pending shorts", "short words held back"},
    {"  retro-fix", "short words put right later"},
    {"replacement posted", "words retyped"},
    {"replacement aborted: missing callback proxy", "not retyped: no proxy"},
    {"replacement aborted: Secure Input", "not retyped: password or no event source"},
    {"  input-source selection issued=true", "layouts selected"},
    {"  input-source selection issued=false", "layouts not selected"},
    {"manual fix buffer", "by hand: the word being typed"},
    {"manual fix last", "by hand: the last word"},
    {"  manual undo of auto-fix", "taken back by hand"},
    {"  rejection armed", "erased after a correction"},
    {"  rejection confirmed", "typed again after it"},
    {"tracking cleared: Secure Input", "forgotten: password"},
    {"tracking cleared: shortcut modifiers", "forgotten: shortcut"},
    {"tracking cleared: empty Unicode payload", "forgotten: key without text"},
    {"tracking cleared: multi-character payload", "forgotten: key with several characters"},
    {"*** PAUSE: ", "pauses"},
    {"*** PAUSE over", "ends of pauses"},
    {"*** TAP DISABLED", "disabled by the system"},
    {"*** WATCHDOG: tap disabled", "found disabled"},
    {"*** WATCHDOG: hardware keystrokes missing", "found without keys"},
});

}  // namespace

std::vector<std::pair<std::string, std::size_t>> decisionCounts(std::string_view logged) {
  std::array<std::size_t, kKinds.size()> counts{};
  std::size_t others = 0;
  while (!logged.empty()) {
    const auto line = logged.substr(0, logged.find('\n'));
    logged.remove_prefix(std::min(logged.size(), line.size() + 1));
    const auto* kind = std::find_if(kKinds.begin(), kKinds.end(), [line](const Kind& candidate) {
      return line.starts_with(candidate.start);
    });
    if (kind == kKinds.end()) {
      ++others;
    } else {
      ++counts[static_cast<std::size_t>(kind - kKinds.begin())];
    }
  }
  std::vector<std::pair<std::string, std::size_t>> found;
  for (std::size_t i = 0; i < kKinds.size(); ++i) {
    if (counts[i] > 0 && kKinds[i].name != kSaid) found.emplace_back(kKinds[i].name, counts[i]);
  }
  if (others > 0) found.emplace_back("other lines", others);
  return found;
}

}  // namespace tessarok::commands

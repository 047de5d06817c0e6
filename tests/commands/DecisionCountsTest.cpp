#include <gtest/gtest.h>

#include "commands/DecisionCounts.h"

namespace tessarok::commands {
namespace {

using Counts = std::vector<std::pair<std::string, std::size_t>>;

TEST(DecisionCounts, AnEmptyLogHasNone) {
  EXPECT_EQ(decisionCounts(""), Counts{});
}

TEST(DecisionCounts, CountsTheLinesOfEachKind) {
  EXPECT_EQ(decisionCounts("tap started enabled=true auto=true postAccess=true dictionaries=true\n"
                           "eval count=6 ru=0 en=0\n"
                           "  decided fromRu=false conf=high trim=0\n"
                           "replacement posted: deleteCount=6 textCount=6\n"
                           "eval count=5 ru=1 en=0\n"
                           "*** PAUSE: auto-fix off for 5s ***\n"
                           "*** PAUSE over — auto-fix on ***\n"),
            (Counts{{"starts", 1},
                    {"words ended", 2},
                    {"decided: to Russian", 1},
                    {"words retyped", 1},
                    {"pauses", 1},
                    {"ends of pauses", 1}}));
}

TEST(DecisionCounts, NothingOfOtherLinesIsTold) {
  EXPECT_EQ(decisionCounts("secret\n\n  eval count=1\nevaluate\nunfinished"),
            (Counts{{"other lines", 5}}));
  EXPECT_EQ(decisionCounts("eval unfinished"), (Counts{{"words ended", 1}}));
}

}  // namespace
}  // namespace tessarok::commands

#include "tests/desktops/fcitx5/SentenceCheck.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>
#include <string>

#include "tests/desktops/fcitx5/Sentences.h"
#include "tests/desktops/x11/Patience.h"

namespace tessarok::testing {

namespace {

constexpr const char* kProbe = "ghbdtn\n";
/// Seconds for all lines: in a flood of keys each line may wait for most of a second.
constexpr double kLinesPatience = 120;

/// Waits while too many lines have been typed that do not stand in the entry yet.
void waitForLines(const Session& session, const std::string& before, std::size_t typed) {
  const auto ahead = session.mostLinesAhead();
  if (!ahead || typed <= *ahead) return;
  static_cast<void>(waitUntil([&] {
    const auto text = session.text();
    const auto at = text.begin() + static_cast<std::ptrdiff_t>(before.size());
    return static_cast<std::size_t>(std::count(at, text.end(), '\n')) + *ahead >= typed;
  }));
}

}  // namespace

void expectSentences(Session& session, int count, std::chrono::milliseconds interval) {
  const auto list = sentences(count, static_cast<unsigned>(interval.count()));
  const auto keys = std::accumulate(list.begin(), list.end(), std::string());
  const auto before = session.typeUntilCorrected();
  // The layout that the first word has led to is that of the sentences.
  const auto expected = onTheVirtualDesktop(kProbe + keys).substr(std::string("привет\n").size());
  for (std::size_t line = 0; line < list.size(); ++line) {
    waitForLines(session, before, line);
    session.hands().type(list[line], interval);
  }
  static_cast<void>(waitUntil([&] { return session.text() == before + expected; }, kLinesPatience));
  const auto text = session.text();
  ASSERT_EQ(text.substr(0, before.size()), before);
  const auto shown = text.substr(before.size());
  const auto at = std::mismatch(shown.begin(), shown.end(), expected.begin(), expected.end());
  // The whole line in which the first difference is.
  const auto difference = static_cast<std::size_t>(at.first - shown.begin());
  const auto line = difference == 0 ? 0 : shown.rfind('\n', difference - 1) + 1;
  EXPECT_EQ(shown.substr(line, 100), expected.substr(line, 100)) << "at byte " << difference;
}

}  // namespace tessarok::testing

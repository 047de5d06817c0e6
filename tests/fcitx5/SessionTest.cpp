// A GTK program in whole sessions: on an X server and on a Wayland compositor.

#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <numeric>
#include <string>

#include "fcitx5/Sentences.h"
#include "fcitx5/SwaySession.h"
#include "fcitx5/X11Session.h"
#include "x11/Patience.h"

namespace tessarok::testing {
namespace {

constexpr int kSentences = 50;
constexpr const char* kProbe = "ghbdtn\n";

template <typename AnySession>
class Fcitx5Session : public ::testing::Test {
 protected:
  /// Waits while too many lines have been typed that do not stand in the entry yet.
  static void waitForLines(const Session& session, const std::string& before, std::size_t typed) {
    const auto ahead = session.mostLinesAhead();
    if (!ahead || typed <= *ahead) return;
    static_cast<void>(waitUntil([&] {
      const auto text = session.text();
      const auto at = text.begin() + static_cast<std::ptrdiff_t>(before.size());
      return static_cast<std::size_t>(std::count(at, text.end(), '\n')) + *ahead >= typed;
    }));
  }

  /// Types sentences, keys so far apart, and compares with the virtual desktop.
  static void typeSentences(std::chrono::milliseconds interval) {
    const auto list = sentences(kSentences, static_cast<unsigned>(interval.count()));
    const auto keys = std::accumulate(list.begin(), list.end(), std::string());
    AnySession session;
    session.openEntry(Session::Entry::text);
    const auto before = session.typeUntilCorrected();
    // The layout that the first word has led to is that of the sentences.
    const auto expected = onTheVirtualDesktop(kProbe + keys).substr(std::string("привет\n").size());
    for (std::size_t line = 0; line < list.size(); ++line) {
      waitForLines(session, before, line);
      session.hands().type(list[line], interval);
    }
    static_cast<void>(session.shows(before + expected));
    const auto shown = session.text().substr(before.size());
    const auto at = std::mismatch(shown.begin(), shown.end(), expected.begin(), expected.end());
    // The whole line in which the first difference is.
    const auto difference = static_cast<std::size_t>(at.first - shown.begin());
    const auto line = difference == 0 ? 0 : shown.rfind('\n', difference - 1) + 1;
    EXPECT_EQ(shown.substr(line, 100), expected.substr(line, 100)) << "at byte " << difference;
  }
};

using Sessions = ::testing::Types<X11Session, SwaySession>;

class SessionNames {
 public:
  template <typename AnySession>
  static std::string GetName(int) {
    return std::is_same_v<AnySession, X11Session> ? "X11" : "Sway";
  }
};

TYPED_TEST_SUITE(Fcitx5Session, Sessions, SessionNames);

TYPED_TEST(Fcitx5Session, SentencesComeOutWithoutAnyPause) {
  this->typeSentences(std::chrono::milliseconds(0));
}

TYPED_TEST(Fcitx5Session, SentencesComeOutWithKeysFiveMillisecondsApart) {
  this->typeSentences(std::chrono::milliseconds(5));
}

TYPED_TEST(Fcitx5Session, SentencesComeOutWithKeysFifteenMillisecondsApart) {
  this->typeSentences(std::chrono::milliseconds(15));
}

TYPED_TEST(Fcitx5Session, PasswordsStayAsTyped) {
  TypeParam session;
  // The session works; what is not corrected afterwards is so because it is a password.
  session.openEntry(Session::Entry::text);
  static_cast<void>(session.typeUntilCorrected());
  session.openEntry(Session::Entry::password);
  const auto before = session.typeUntilShown();
  session.hands().type("ghbdtn rfr ltkf\n");
  EXPECT_TRUE(session.shows(before + "ghbdtn rfr ltkf\n")) << session.text();
}

TYPED_TEST(Fcitx5Session, FcitxMayBeRestartedInTheMiddleOfAWord) {
  TypeParam session;
  session.openEntry(Session::Entry::text);
  auto expected = session.typeUntilCorrected();
  // Back to the English layout, in which the word is begun.
  session.hands().type("hello ghb");
  ASSERT_TRUE(session.shows(expected + "hello ghb")) << session.text();
  session.endFcitx();
  session.hands().type("dtn\n");
  expected += "hello ghbdtn\n";
  ASSERT_TRUE(session.shows(expected)) << session.text();
  session.startFcitx();
  const auto after = session.typeUntilCorrected();
  EXPECT_EQ(after.substr(0, expected.size()), expected);
}

}  // namespace
}  // namespace tessarok::testing

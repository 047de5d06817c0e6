// A GTK program in whole sessions: on an X server and on a Wayland compositor.

#include <chrono>
#include <gtest/gtest.h>
#include <string>

#include "tests/desktops/fcitx5/SentenceCheck.h"
#include "tests/desktops/fcitx5/SwaySession.h"
#include "tests/desktops/fcitx5/X11Session.h"

namespace tessarok::testing {
namespace {

constexpr int kSentences = 50;

template <typename AnySession>
class Fcitx5Session : public ::testing::Test {
 protected:
  void SetUp() override {
    if constexpr (std::is_same_v<AnySession, SwaySession>) {
      if (const auto obstacle = SwaySession::obstacle()) GTEST_SKIP() << *obstacle;
    }
  }

  /// Types sentences, keys so far apart, and compares with the virtual desktop.
  static void typeSentences(std::chrono::milliseconds interval) {
    AnySession session;
    session.openEntry(Session::Entry::text);
    expectSentences(session, kSentences, interval);
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

// What a person types into applications of an X server, with the built program in between.

#include <gtest/gtest.h>
#include <string>

#include "tests/desktops/x11/Applications.h"
#include "tests/desktops/x11/KeyCodes.h"
#ifdef TESSAROK_LARGE_APPLICATIONS
#include "tests/desktops/x11/LargeApplications.h"
#endif
#include "tests/desktops/x11/Patience.h"
#include "tests/desktops/x11/Tessarok.h"
#include "tests/desktops/x11/XServer.h"

namespace tessarok::testing {
namespace {

constexpr unsigned kRussianGroup = 1;

template <typename Window>
class X11Typing : public ::testing::Test {
 protected:
  void press(std::string_view text) { server_.type(text); }
  void expect(const std::string& text) {
    EXPECT_TRUE(window_.shows(text)) << window_.text() << "\n" << program_.errors();
  }
  /// What is typed becomes this line.
  void expectLine(std::string_view typed, const std::string& line) {
    press(typed);
    press("\n");
    shown_ += line + "\n";
    expect(shown_);
  }

  XServer server_{"us,ru", "grp:alt_shift_toggle"};
  Window window_{server_};
  Tessarok program_{server_};
  std::string shown_;
};

using Windows = ::testing::Types<TESSAROK_WINDOWS>;
TYPED_TEST_SUITE(X11Typing, Windows);

TYPED_TEST(X11Typing, RussianTypedInTheEnglishLayout) {
  // Shift with 7 is the question mark of the Russian layout.
  this->expectLine("ghbdtn vbh rfr ltkf& ", "привет мир как дела? ");
  // The layout stays switched.
  EXPECT_EQ(this->server_.group(), kRussianGroup);
  this->expectLine("ghbdtn", "привет");
}

TYPED_TEST(X11Typing, EnglishTypedInTheRussianLayout) {
  this->server_.lockGroup(kRussianGroup);
  this->expectLine("hello world. ", "hello world. ");
  EXPECT_EQ(this->server_.group(), 0u);
}

TYPED_TEST(X11Typing, ReturnEndsAWordAndTheLine) {
  this->expectLine("ghbdtn", "привет");
  this->expectLine("vbh", "мир");
}

TYPED_TEST(X11Typing, ShortWordsAreFixedLater) {
  this->expectLine("vs nj pf ghbdtn ", "мы то за привет ");
}

TYPED_TEST(X11Typing, CapitalsArePutRight) {
  this->expectLine("GHbdtn, Ghbdtn! GHBDTN ", "Привет, Привет! ПРИВЕТ ");
}

TYPED_TEST(X11Typing, AltSpaceUndoesAFixAndRedoesIt) {
  this->press("ghbdtn ");
  this->server_.tapWith(kAlt, kSpace);
  this->expectLine("", "ghbdtn ");
  this->press("vbh ");
  this->server_.tapWith(kAlt, kSpace);
  this->server_.tapWith(kAlt, kSpace);
  this->expectLine("", "мир ");
}

TYPED_TEST(X11Typing, AltSpaceConvertsTheWordBeingTyped) {
  this->press("ghbd");
  this->server_.tapWith(kAlt, kSpace);
  this->expectLine("tn", "привет");
}

TYPED_TEST(X11Typing, ThePauseKeyDoesWhatAltSpaceDoes) {
  this->press("ghbdtn ");
  this->server_.tap(kPause);
  this->expectLine("", "ghbdtn ");
}

TYPED_TEST(X11Typing, AnErasedFixIsLearned) {
  this->press("ghbdtn ");
  this->press("\b\b\b\b\b\b\b");
  this->server_.tapWith(kAlt, kShift);
  this->expectLine("ghbdtn ", "ghbdtn ");
  this->expectLine("ghbdtn ", "ghbdtn ");
  const auto file = this->program_.learned() / "rejects.txt";
  EXPECT_TRUE(waitUntil([&] { return std::filesystem::exists(file); }));
}

TYPED_TEST(X11Typing, AHotKeyOfTheDesktopSwitchesInTheMiddle) {
  this->press("hello ");
  this->server_.tapWith(kAlt, kShift);
  this->press("ghbdtn ");
  this->server_.tapWith(kAlt, kShift);
  this->expectLine("world ", "hello привет world ");
}

TYPED_TEST(X11Typing, AHotKeyInTheMiddleOfAWordMakesItUnknown) {
  this->press("ghb");
  this->server_.tapWith(kAlt, kShift);
  this->expectLine("dtn ", "ghbвет ");
  // The next one is known again.
  this->expectLine("hello ", "hello ");
  EXPECT_EQ(this->server_.group(), 0u);
}

TYPED_TEST(X11Typing, TheGraveKeyPausesAndIsTyped) {
  this->expectLine("`ghbdtn ", "`ghbdtn ");
}

TYPED_TEST(X11Typing, WithCapsLockLettersKeepTheirCase) {
  this->server_.tap(kCaps);
  this->press("ghbdtn vbh ");
  this->expectLine("", "ПРИВЕТ МИР ");
  EXPECT_TRUE(this->server_.isCapsLocked());
  this->server_.tap(kCaps);
  this->expectLine("ghbdtn ", "привет ");
}

TYPED_TEST(X11Typing, AWordRetypedWhileShiftIsHeldStaysSmall) {
  // The exclamation mark ends the word while Shift is down, and it still is for what follows.
  this->press("ghbdtn");
  this->server_.key(kShift, true);
  this->server_.tap(kOne);
  this->server_.tap(kA);
  this->server_.key(kShift, false);
  this->expectLine("", "привет!Ф");
  EXPECT_TRUE(waitUntil([this] { return this->server_.keysDown().empty(); }));
}

TYPED_TEST(X11Typing, BackspaceShortensAWord) {
  this->expectLine("ghbdtx\bn ", "привет ");
}

TYPED_TEST(X11Typing, AWordIsLeftAloneAfterAClick) {
  this->press("ghbd");
  this->server_.click();
  this->expectLine("tn vbh", "ghbdtn мир");
}

}  // namespace
}  // namespace tessarok::testing

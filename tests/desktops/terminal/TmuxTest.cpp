// Under a terminal that a person could look at: what stands on the screen in the end.

#include <array>
#include <chrono>
#include <cstdio>
#include <gtest/gtest.h>
#include <poll.h>
#include <stdlib.h>
#include <string>

#include "desktops/virtual/TemporaryDirectory.h"

namespace tessarok::testing {
namespace {

std::string outputOf(const std::string& command) {
  std::string text;
  auto* pipe = ::popen((command + " 2>&1").c_str(), "r");
  if (pipe == nullptr) return text;
  std::array<char, 4096> chunk;
  while (const auto count = std::fread(chunk.data(), 1, chunk.size(), pipe)) {
    text.append(chunk.data(), count);
  }
  ::pclose(pipe);
  return text;
}

class Tmux {
 public:
  explicit Tmux(const std::string& command) {
    ::setenv("LC_ALL", "C.UTF-8", 1);
    ::setenv("HOME", folder_.path().c_str(), 1);
    ::setenv("PS1", "ready> ", 1);
    ::unsetenv("TESSAROK_TERMINAL");
    run("-f /dev/null new-session -d -x 60 -y 10 " + command);
  }
  Tmux(const Tmux&) = delete;
  Tmux& operator=(const Tmux&) = delete;
  ~Tmux() { run("kill-server"); }

  /// `keys` as tmux names them.
  void press(const std::string& keys) { run("send-keys " + keys); }
  /// Whether the screen comes to show exactly this, but for empty lines at the end.
  [[nodiscard]] bool shows(const std::string& text) {
    return comes([&] { return screen_ == text; });
  }
  [[nodiscard]] bool endsWith(const std::string& text) {
    return comes([&] { return screen_.ends_with(text); });
  }
  [[nodiscard]] const std::string& screen() const { return screen_; }

 private:
  template <typename Condition>
  bool comes(Condition isThere) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (std::chrono::steady_clock::now() < deadline) {
      screen_ = run("capture-pane -p");
      screen_.erase(screen_.find_last_not_of('\n') + 1);
      if (isThere()) return true;
      ::poll(nullptr, 0, 20);
    }
    return false;
  }

  std::string run(const std::string& command) const {
    return outputOf("tmux -u -S '" + (folder_.path() / "socket").string() + "' " + command);
  }

  virtualdesktop::TemporaryDirectory folder_;
  std::string screen_;
};

TEST(TerminalInTmux, TheScreenShowsTheFixedWords) {
  if (outputOf("tmux -V").rfind("tmux ", 0) != 0) GTEST_SKIP() << "tmux is not installed";
  Tmux tmux("'" TESSAROK_PROGRAM "' terminal --resources '" TESSAROK_TEST_DATA "' -- bash --norc");
  ASSERT_TRUE(tmux.shows("ready>")) << tmux.screen();
  tmux.press("-l 'echo ghbdtn vbh'");
  EXPECT_TRUE(tmux.shows("ready> echo привет мир")) << tmux.screen();
  tmux.press("Enter");
  EXPECT_TRUE(tmux.shows("ready> echo привет мир\nпривет мир\nready>")) << tmux.screen();
  // The layout is the English one again, and a conversion by hand goes to and fro.
  tmux.press("-l 'echo vbh'");
  tmux.press("M-Space");
  EXPECT_TRUE(tmux.shows("ready> echo привет мир\nпривет мир\nready> echo мир")) << tmux.screen();
  tmux.press("M-Space");
  EXPECT_TRUE(tmux.shows("ready> echo привет мир\nпривет мир\nready> echo vbh")) << tmux.screen();
}

TEST(TerminalInTmux, WhereNobodyAnswersKeysTypedMeanwhileStay) {
  if (outputOf("tmux -V").rfind("tmux ", 0) != 0) GTEST_SKIP() << "tmux is not installed";
  Tmux tmux("bash --norc");
  ASSERT_TRUE(tmux.shows("ready>")) << tmux.screen();
  tmux.press("-l \"p() { '" TESSAROK_PROGRAM "' pause >/dev/null 2>&1; }; clear\"");
  tmux.press("Enter");
  ASSERT_TRUE(tmux.shows("ready>")) << tmux.screen();
  tmux.press("p Enter e c h o Space a b c d e f g h i j k l m n o p q '\"' '\"' r Enter");
  EXPECT_TRUE(tmux.endsWith("\nabcdefghijklmnopqr\nready>")) << tmux.screen();
}

}  // namespace
}  // namespace tessarok::testing

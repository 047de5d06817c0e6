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
  Tmux() {
    ::setenv("LC_ALL", "C.UTF-8", 1);
    ::setenv("HOME", folder_.path().c_str(), 1);
    ::setenv("PS1", "ready> ", 1);
    run("-f /dev/null new-session -d -x 60 -y 10 '" TESSAROK_PROGRAM
        "' terminal --resources '" TESSAROK_TEST_DATA "' -- bash --norc");
  }
  Tmux(const Tmux&) = delete;
  Tmux& operator=(const Tmux&) = delete;
  ~Tmux() { run("kill-server"); }

  /// `keys` as tmux names them.
  void press(const std::string& keys) { run("send-keys " + keys); }
  /// Whether the screen comes to show exactly this, but for empty lines at the end.
  [[nodiscard]] bool shows(const std::string& text) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (std::chrono::steady_clock::now() < deadline) {
      screen_ = run("capture-pane -p");
      screen_.erase(screen_.find_last_not_of('\n') + 1);
      if (screen_ == text) return true;
      ::poll(nullptr, 0, 20);
    }
    return false;
  }
  [[nodiscard]] const std::string& screen() const { return screen_; }

 private:
  std::string run(const std::string& command) const {
    return outputOf("tmux -u -S '" + (folder_.path() / "socket").string() + "' " + command);
  }

  virtualdesktop::TemporaryDirectory folder_;
  std::string screen_;
};

TEST(TerminalInTmux, TheScreenShowsTheFixedWords) {
  if (outputOf("tmux -V").rfind("tmux ", 0) != 0) GTEST_SKIP() << "tmux is not installed";
  Tmux tmux;
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

}  // namespace
}  // namespace tessarok::testing

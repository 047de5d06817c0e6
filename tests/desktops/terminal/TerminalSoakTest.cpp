// A person types for a long time in terminals, and everything around the program breaks now and
// then: it is killed, stopped or left, windows change their size, other programs write between the
// keys, lists are edited, nothing can be written. No key is lost or doubled, no memory grows, and
// what was learned stays on the disk.

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "desktops/layouts/KeyTable.h"
#include "tests/desktops/fcitx5/Sentences.h"
#include "tests/desktops/terminal/UserAtTerminal.h"
#include "tests/support/SoakHome.h"
#include "tests/support/SoakTyping.h"
#include "text/Text.h"

namespace tessarok::testing {
namespace {

namespace fs = std::filesystem;
using layouts::KeyTable;

constexpr std::string_view kAltSpace = "\x1b ";
constexpr std::string_view kControlSpace{"\0", 1};
/// So much is in a file before the next one is begun.
constexpr std::size_t kFullFile = 4000;
/// Keys of one program after which its memory is looked at for the first time.
constexpr std::size_t kWarmUp = 3000;
/// kB.
constexpr long kMostGrowth = 2048;
/// Words whose fix is taken back.
constexpr std::size_t kRejections = 40;
/// What is typed into another window, where it must be fixed.
constexpr const char* kWordOfAnother = "ghbdtn";
/// Lists are looked at every two seconds.
constexpr auto kListsAreRead = std::chrono::seconds(3);
constexpr auto kHandMoves = std::chrono::milliseconds(200);
constexpr auto kPatience = std::chrono::seconds(30);
/// The last of the programs that are typed into.
constexpr std::size_t kShellThatReadsLines = 2;

/// The same keys with the desktop's other layout.
std::string inRussian(const std::string& keys) {
  std::string text;
  for (const char key : keys) {
    const auto stroke = KeyTable::english().strokeFor(static_cast<char32_t>(key));
    const bool isKept = key == ' ' || key == '\n' || key == '\b' || !stroke;
    const auto letter = isKept ? std::nullopt : KeyTable::russian().character(stroke->code, false);
    text::appendScalar(letter ? *letter : static_cast<char32_t>(key), text);
  }
  return text;
}

/// What a person would look at first.
std::string_view endOf(std::string_view screen) {
  constexpr std::size_t kLength = 400;
  return screen.substr(screen.size() - std::min(screen.size(), kLength));
}

class TerminalLongDay : public ::testing::Test {
 protected:
  void open() {
    close();
    file_ = home_.path() / ("text" + std::to_string(++files_));
    typing_.begin();
    const auto name = file_.string();
    // Lines that the system collects, such lines with output in between, and lines that their
    // program edits itself.
    const std::vector<std::string> programs = {
        "exec cat > " + name, "(while sleep 0.1; do printf .; done) & cat > " + name,
        "touch " + name + "; while IFS= read -er line; do echo \"$line\" >> " + name + "; done"};
    kind_ = typing_.below(programs.size());
    UserAtTerminal::Setup setup;
    setup.home = home_.path();
    user_ = std::make_unique<UserAtTerminal>(
        std::vector<std::string>{"bash", "--norc", "-c", programs[kind_]}, setup);
    ASSERT_TRUE(waitFor([this] { return fs::exists(file_); }));
    keysBefore_ = typing_.count();
    memory_ = 0;
    hasSwitched_ = false;
  }
  /// The window is closed.
  void close() {
    if (!user_) return;
    user_->hangUp();
    EXPECT_NE(user_->exitStatus(), -1) << last_;
    user_.reset();
  }

  void type(std::string keys) {
    if (keys != "\n") {
      // Between two lines a shell lets the system collect what is typed, and Backspaces that come
      // just then erase nothing: without the corrector too, in 1 to 5 of 2,000 lines that are typed
      // ahead.
      if (kind_ == kShellThatReadsLines) std::replace(keys.begin(), keys.end(), '\n', ' ');
      isDesktopRussian_ = typing_.below(6) == 0;
      // The desktop's layout shows by the first letter, not by a sign that both have. And so many
      // keys may have come at once before that they were taken for a paste, which shows nothing.
      if (keys.front() < 'a' || keys.front() > 'z') keys.insert(0, "q");
    }
    typing_.note(keys);
    auto sent = isDesktopRussian_ ? inRussian(keys) : keys;
    std::replace(sent.begin(), sent.end(), '\n', '\r');
    std::replace(sent.begin(), sent.end(), '\b', '\x7f');
    user_->type(sent);
  }
  void expectKeys() {
    type("\n");
    std::string shown;
    const bool isRight = waitFor([&] {
      user_->type("");
      shown = SoakTyping::keysOf(contentOf(file_));
      return shown == typing_.onScreen();
    });
    if (isRight) return;
    FAIL() << typing_.difference(shown) << " in program " << kind_ << " after " << last_;
  }

  /// A fix that the person takes back: it counts, and the count comes into a file and stays.
  void reject() {
    if (rejectable_.empty() || kind_ != 0 || hasSwitched_) return;
    expectKeys();
    // While a list that was edited is read, words stay as they were typed.
    std::this_thread::sleep_for(kListsAreRead);
    // After a switch of theirs the person may be typing Russian here, and needs no fix for it.
    isDesktopRussian_ = false;
    typing_.note("q");
    user_->type("q");
    expectKeys();
    if (!contentOf(file_).ends_with("q\n")) return;
    const auto [word, text] = rejectable_.back();
    rejectable_.pop_back();
    typing_.note(word + " ");
    user_->type(word + " ");
    ASSERT_TRUE(user_->sees(text)) << text << " after " << last_;
    user_->type(kAltSpace);
    ASSERT_TRUE(user_->sees(word)) << word;
    expectKeys();
    ASSERT_TRUE(waitFor([&, name = word] { return home_.isLearned(name); }))
        << word << " after " << last_ << "; there are " << home_.filesOfLists()
        << "; the screen: " << endOf(user_->screen());
    learned_.insert(word);
  }
  /// Words that are fixed when they stand alone, each of them once: a word whose fix was taken back
  /// stays as it is typed.
  void chooseRejectable() {
    std::set<std::string> seen = {kWordOfAnother};
    while (rejectable_.size() < kRejections) {
      const auto word = typing_.word();
      if (!seen.insert(word).second) continue;
      auto text = onTheVirtualDesktop(word + " ");
      if (text != word + " ") rejectable_.emplace_back(word, std::move(text));
    }
  }

  void fault() {
    const auto& [name, work] = faults_[typing_.below(faults_.size())];
    last_ += ", " + name;
    ++done_[name];
    work();
    if (HasFatalFailure()) return;
    type(typing_.words());
    expectKeys();
  }
  void lookAtMemory() {
    if (typing_.count() - keysBefore_ < kWarmUp) return;
    const auto now = user_->privateMemory();
    if (memory_ == 0) memory_ = now;
    EXPECT_LE(now, memory_ + kMostGrowth) << "after " << typing_.count() << " keys";
  }

  SoakTyping typing_{2};
  SoakHome home_;
  std::vector<std::pair<std::string, std::string>> rejectable_;
  std::set<std::string> learned_;
  std::map<std::string, int> done_;
  std::string last_ = "a start";

 private:
  template <typename Condition>
  [[nodiscard]] static bool waitFor(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!condition()) {
      if (std::chrono::steady_clock::now() > end) return false;
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
  }
  void end(int signal) {
    expectKeys();
    user_->send(signal);
    EXPECT_NE(user_->exitStatus(), -1) << last_;
    user_.reset();
    open();
  }
  void withoutFolder() {
    expectKeys();
    home_.takeListsAway();
    type(typing_.words());
    expectKeys();
    home_.putListsBack();
  }
  void editDictionary() {
    auto words = typing_.someWords();
    std::erase_if(words, [this](const std::string& word) {
      return word == kWordOfAnother ||
             std::any_of(rejectable_.begin(), rejectable_.end(),
                         [&word](const auto& pair) { return pair.first == word; });
    });
    home_.editDictionary(words);
  }
  void stop() {
    type(typing_.words());
    user_->send(SIGSTOP);
    type(typing_.words());
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    user_->send(SIGCONT);
  }
  /// Another window of the same person.
  void openAnother() {
    UserAtTerminal::Setup setup;
    setup.home = home_.path();
    UserAtTerminal other({"cat"}, setup);
    // On a machine as busy as a test may make it the lists take longer than the launch waits for
    // them, and until then words stay as they are typed.
    std::this_thread::sleep_for(kListsAreRead);
    other.type(std::string(kWordOfAnother) + " \r");
    EXPECT_TRUE(other.sees("привет")) << other.screen() << " after " << last_;
    other.send(typing_.below(2) == 0 ? SIGKILL : SIGHUP);
    EXPECT_NE(other.exitStatus(), -1);
  }

  bool isDesktopRussian_ = false;
  bool hasSwitched_ = false;
  fs::path file_;
  int files_ = 0;
  std::size_t kind_ = 0;
  std::unique_ptr<UserAtTerminal> user_;
  std::size_t keysBefore_ = 0;
  long memory_ = 0;

  const std::vector<std::pair<std::string, std::function<void()>>> faults_ = {
      {"the program is killed", [this] { end(SIGKILL); }},
      {"the program is ended", [this] { end(SIGTERM); }},
      {"the window is closed",
       [this] {
         expectKeys();
         open();
       }},
      {"the program is stopped", [this] { stop(); }},
      {"the window changes its size",
       [this] {
         type(typing_.word());
         user_->resize(static_cast<unsigned short>(5 + typing_.below(40)),
                       static_cast<unsigned short>(30 + typing_.below(150)));
       }},
      {"the person switches",
       [this] {
         expectKeys();
         // What comes at once behind as many bytes as a paste has is a part of it.
         std::this_thread::sleep_for(kHandMoves);
         hasSwitched_ = true;
         user_->type(kControlSpace);
         expectKeys();
       }},
      {"a long text is pasted",
       [this] {
         std::string text;
         while (text.size() < 300)
           text += typing_.word() + " ";
         // As it is, whatever the layouts.
         typing_.note(text);
         user_->type(text);
       }},
      {"a list is edited", [this] { editDictionary(); }},
      {"no file can be written", [this] { withoutFolder(); }},
      {"another window is opened", [this] { openAnother(); }},
  };
};

TEST_F(TerminalLongDay, LosesNoKey) {
  if (std::getenv("TESSAROK_SOAK_SECONDS") == nullptr) GTEST_SKIP() << "make soak runs it";
  chooseRejectable();
  const auto end = std::chrono::steady_clock::now() + SoakTyping::duration();
  int faults = 0;
  open();
  while (!HasFatalFailure() && (std::chrono::steady_clock::now() < end || faults < 3)) {
    type(typing_.words());
    if (typing_.below(8) == 0) expectKeys();
    const auto chance = typing_.below(100);
    if (chance < 10) {
      fault();
      ++faults;
    } else if (chance < 15) {
      reject();
    }
    if (HasFatalFailure()) return;
    lookAtMemory();
    if (typing_.onScreen().size() < kFullFile) continue;
    expectKeys();
    open();
  }
  if (HasFatalFailure()) return;
  expectKeys();
  close();
  for (const auto& word : learned_)
    EXPECT_TRUE(home_.isLearned(word)) << word;
  std::cout << typing_.count() << " keys, " << faults << " faults of " << done_.size() << " kinds, "
            << learned_.size() << " words learned\n";
}

}  // namespace
}  // namespace tessarok::testing

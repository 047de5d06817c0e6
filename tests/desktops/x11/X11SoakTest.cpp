// A person types for a long time, and everything around the program breaks now and then: the
// program itself and its watchdog, the X server, the bus, layouts, keyboards, the person's files.
// No key is lost or doubled, no memory grows, and what was learned stays on the disk.

#include <chrono>
#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/desktops/freedesktop/PrivateBus.h"
#include "tests/desktops/x11/Applications.h"
#include "tests/desktops/x11/KeyCodes.h"
#include "tests/desktops/x11/KeyboardGrab.h"
#include "tests/desktops/x11/Patience.h"
#include "tests/desktops/x11/Tessarok.h"
#include "tests/desktops/x11/XServer.h"
#include "tests/support/ProcessMemory.h"
#include "tests/support/SoakHome.h"
#include "tests/support/SoakTyping.h"

namespace tessarok::testing {
namespace {

/// So much is in a window before it is closed.
constexpr std::size_t kFullWindow = 4000;
/// Keys of one program after which its memory is looked at for the first time.
constexpr std::size_t kWarmUp = 3000;
/// kB.
constexpr long kMostGrowth = 2048;
/// As while a screen is plugged in.
constexpr std::chrono::milliseconds kLongestSleep{2000};

class X11Soak : public ::testing::Test {
 protected:
  X11Soak() { startServer(); }

  void startServer() {
    program_.reset();
    window_.reset();
    server_ = std::make_unique<XServer>();
    openWindow();
    startProgram();
  }
  void openWindow() {
    window_.reset();
    window_ = std::make_unique<GtkEntry>(*server_);
    typing_.begin();
  }
  void startProgram(const std::string& sign = "correcting in every application") {
    bus_ = std::make_unique<PrivateBus>();
    Tessarok::Setup setup;
    setup.home = home_.path();
    setup.environment = {{"DBUS_SESSION_BUS_ADDRESS", bus_->address()},
                         {"DBUS_SYSTEM_BUS_ADDRESS", bus_->address()}};
    program_ = std::make_unique<Tessarok>(*server_, setup);
    ASSERT_TRUE(program_->says(sign)) << program_->errors();
    keysBefore_ = typing_.count();
    memory_ = 0;
    last_ = "a start";
  }
  void endProgram(int signal, bool isWatchdog) {
    lookAtMemory();
    if (isWatchdog) {
      program_->send(signal);
    } else {
      program_->sendToWorker(signal);
    }
    const int status = program_->exitStatus();
    ASSERT_TRUE(signal != SIGTERM || status == 0) << program_->errors();
    // The other of the two lets go of the keyboard.
    ASSERT_TRUE(waitUntil([this] { return !server_->isKeyboardHeld(); }));
  }

  void type(const std::string& keys) {
    typing_.note(keys);
    server_->type(keys);
  }
  void expectKeys() {
    const auto shown = [this] { return SoakTyping::keysOf(window_->text()); };
    const bool isRight = waitUntilGives(shown, typing_.onScreen());
    if (isRight) return;
    FAIL() << typing_.difference(shown()) << " after " << last_ << "\n" << program_->errors();
  }
  /// A fix that the person takes back: it counts, and the count comes into a file and stays.
  void reject() {
    // Whatever the program still does to the layout is done then.
    type("\n");
    expectKeys();
    server_->lockGroup(0);
    const auto& word = typing_.word();
    type(word);
    expectKeys();
    const bool isAsTyped = lastWord() == word;
    type(" ");
    expectKeys();
    const bool isFixed = isAsTyped && lastWord() != word;
    if (!isFixed) return;
    server_->tapWith(kAlt, kSpace);
    ASSERT_TRUE(waitUntil([&] { return lastWord() == word; })) << lastWord() << " for " << word;
    ASSERT_TRUE(waitUntil([&] { return home_.isLearned(word); }))
        << word << " after " << last_ << "\n"
        << program_->errors();
    learned_.insert(word);
    server_->lockGroup(0);
  }
  [[nodiscard]] std::string lastWord() const {
    auto text = window_->text();
    if (text.ends_with(' ')) text.pop_back();
    return text.substr(text.rfind('\n') + 1);
  }
  void lookAtMemory() {
    if (typing_.count() - keysBefore_ < kWarmUp) return;
    const auto now = privateMemoryOf(program_->worker());
    if (memory_ == 0) memory_ = now;
    EXPECT_LE(now, memory_ + kMostGrowth) << "after " << typing_.count() << " keys";
  }

  SoakTyping typing_{1};
  SoakHome home_;
  std::unique_ptr<XServer> server_;
  std::unique_ptr<GtkEntry> window_;
  std::unique_ptr<PrivateBus> bus_;
  std::unique_ptr<Tessarok> program_;
  /// Words that were seen in the files.
  std::set<std::string> learned_;
  /// What has happened to the program in hand.
  std::string last_;
  std::size_t keysBefore_ = 0;
  long memory_ = 0;
};

class X11LongDay : public X11Soak {
 protected:
  /// Something breaks, while keys are pressed where that is to be borne without a loss.
  void fault() {
    const auto& [name, work] = faults_[typing_.below(faults_.size())];
    last_ += ", " + name;
    ++done_[name];
    work();
    if (HasFatalFailure()) return;
    type(typing_.words());
    expectKeys();
  }
  std::map<std::string, int> done_;

 private:
  /// A program that is killed takes what it has in hand with it, so it is not killed between keys.
  void restart(int signal, bool isWatchdog) {
    expectKeys();
    endProgram(signal, isWatchdog);
    if (HasFatalFailure()) return;
    type(typing_.words());
    expectKeys();
    startProgram();
  }
  void withoutFolder() {
    // What can be written nowhere stays in memory until it can.
    expectKeys();
    home_.takeListsAway();
    type(typing_.words());
    expectKeys();
    home_.putListsBack();
  }

  const std::vector<std::pair<std::string, std::function<void()>>> faults_ = {
      {"the watchdog is killed", [this] { restart(SIGKILL, true); }},
      {"the program is killed", [this] { restart(SIGKILL, false); }},
      {"the program is ended", [this] { restart(SIGTERM, true); }},
      {"the X server ends",
       [this] {
         expectKeys();
         startServer();
       }},
      {"the bus ends",
       [this] {
         type(typing_.word());
         bus_->stop();
       }},
      {"the bus hangs", [this] { bus_->hang(); }},
      {"one layout is left",
       [this] {
         type(typing_.word());
         server_->setLayouts(typing_.below(2) == 0 ? "us" : "ru");
         type(typing_.words());
         expectKeys();
         server_->setLayouts("us,ru");
       }},
      {"layouts change places",
       [this] {
         server_->setLayouts("ru,us");
         type(typing_.words());
         expectKeys();
         server_->setLayouts("us,ru");
       }},
      {"the keyboard goes and comes",
       [this] {
         expectKeys();
         server_->setKeyboardEnabled(false);
         server_->setKeyboardEnabled(true);
       }},
      {"the server sleeps",
       [this] {
         server_->pause();
         std::this_thread::sleep_for(kLongestSleep * typing_.below(100) / 100);
         server_->resume();
       }},
      {"the person switches",
       [this] { server_->lockGroup(static_cast<unsigned>(typing_.below(2))); }},
      {"the person clicks",
       [this] {
         expectKeys();
         server_->click();
       }},
      {"a list is edited", [this] { home_.editDictionary(typing_.someWords()); }},
      {"no file can be written", [this] { withoutFolder(); }},
      {"another program has the keyboard at the start",
       [this] {
         expectKeys();
         endProgram(SIGTERM, true);
         if (HasFatalFailure()) return;
         std::optional<KeyboardGrab> other(*server_);
         startProgram("no keyboard that another program does not hold");
         other.reset();
         EXPECT_TRUE(waitUntil([this] { return server_->isKeyboardHeld(); }));
       }},
  };
};

TEST_F(X11LongDay, LosesNoKey) {
  const auto end = std::chrono::steady_clock::now() + SoakTyping::duration();
  int faults = 0;
  while (std::chrono::steady_clock::now() < end || faults < 3) {
    type(typing_.words());
    if (typing_.below(8) == 0) expectKeys();
    const auto chance = typing_.below(100);
    if (chance < 10) {
      fault();
      ++faults;
    } else if (chance < 20) {
      reject();
    }
    if (HasFatalFailure()) return;
    lookAtMemory();
    if (typing_.onScreen().size() < kFullWindow) continue;
    expectKeys();
    openWindow();
  }
  expectKeys();
  endProgram(SIGTERM, true);
  for (const auto& word : learned_)
    EXPECT_TRUE(home_.isLearned(word)) << word;
  std::cout << typing_.count() << " keys, " << faults << " faults of " << done_.size() << " kinds, "
            << learned_.size() << " words learned\n";
}

}  // namespace
}  // namespace tessarok::testing

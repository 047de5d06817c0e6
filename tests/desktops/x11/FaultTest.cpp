#include "tests/desktops/x11/FaultTest.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <set>
#include <sstream>

#include "tests/desktops/x11/Patience.h"
#include "tests/desktops/x11/ProcessState.h"

namespace tessarok::testing {

namespace {

/// Of every kind, at most so many fail when all are to.
constexpr int kMost = 60;

std::string whatIsWrongWithErrors(const std::string& errors, int status, bool mustCorrect) {
  std::istringstream in(errors);
  std::set<std::string> lines;
  for (std::string line; std::getline(in, line);) {
    // Xlib talks for itself, as often as it likes.
    if (line.starts_with("Xlib: ")) continue;
    if (!lines.insert(line).second) return "it says it once";
  }
  if (mustCorrect && status != 0) return "an interruption is no failure";
  const bool corrects = errors.find("correcting in") != std::string::npos;
  return status != 0 || !corrects ? lines.empty() ? "it says why" : "" : "";
}

/// Which of a number of calls fail: all of them, or the first, the last and one between.
std::set<int> chosen(int count, std::mt19937& random) {
  const bool all = std::getenv("TESSAROK_ALL_FAULTS") != nullptr;
  const auto any = [&] { return 1 + static_cast<int>(random() % static_cast<unsigned>(count)); };
  std::set<int> numbers{1, count};
  if (!all) return numbers.insert(any()), numbers;
  if (count <= kMost) {
    for (int number = 1; number <= count; ++number)
      numbers.insert(number);
  }
  while (static_cast<int>(numbers.size()) < std::min(count, kMost))
    numbers.insert(any());
  return numbers;
}

}  // namespace

std::string FaultTest::Failure::text() const {
  return call + ":" + std::to_string(number) + ":" + std::to_string(error) +
         (process.empty() ? "" : ":") + process;
}

void FaultTest::makeAllFail() {
  std::mt19937 random(1);  // NOLINT(cert-msc51-cpp): the same ones every time
  const auto* only = std::getenv("TESSAROK_ONLY_FAULT");
  int made = 0;
  for (const auto& [process, calls] : counts()) {
    for (const auto& [call, count] : calls) {
      if (only != nullptr && call != only) continue;
      const auto errors = errorsOf(call);
      if (errors.empty()) continue;
      for (const int number : chosen(count, random)) {
        for (const int error : errors) {
          ++made;
          const Failure failure{process, call, number, error};
          EXPECT_EQ(broken(failure), "")
              << failure.text() << ", of " << count << ", " << std::strerror(error);
        }
      }
    }
  }
  RecordProperty("made", made);
  std::cout << made << " failures were made\n";
}

std::string FaultTest::broken(const Failure& failure) {
  return live(failure.text(), promisesWith(failure));
}

bool FaultTest::isReadyOrOver(const Tessarok& program) {
  const auto errors = program.errors();
  return errors.find("correcting in") != std::string::npos ||
         errors.find("no keyboard that") != std::string::npos ||
         errors.find("holds the keyboard") != std::string::npos ||
         stateOf(program.process()) == 'Z';
}

std::map<std::string, FaultTest::Calls> FaultTest::counts() {
  EXPECT_EQ(live("", {.noKeyIsLost = true, .itCorrects = true}), "");
  return {{"", callsOf("")}, {"worker", callsOf("worker")}};
}

FaultTest::Calls FaultTest::callsOf(const std::string& process) const {
  Calls calls;
  std::ifstream in(folder_.path() / (process.empty() ? "counts" : "counts." + process));
  int number = 0;
  for (std::string call; in >> call >> number;)
    if (number > 0) calls[call] = number;
  return calls;
}

std::string FaultTest::live(const std::string& fault, const Promises& promises) {
  auto variables = environment();
  variables["LD_PRELOAD"] = TESSAROK_X11_FAULTS;
  variables["TESSAROK_FAULT"] = fault;
  variables["TESSAROK_FAULT_COUNTS"] = (folder_.path() / "counts").string();
  std::filesystem::remove(folder_.path() / "counts.worker");
  server_.lockGroup(0);
  {
    Tessarok program(server_, {.settings = {}, .home = {}, .environment = variables});
    if (const auto problem = watch(program, promises); !problem.empty()) {
      return problem + "; it said: " + program.errors();
    }
  }
  return whatIsLeft();
}

std::string FaultTest::watch(Tessarok& program, const Promises& promises) {
  const auto before = window_.text();
  // It may also end, or wait for something that it says.
  static_cast<void>(waitUntil([&] { return isReadyOrOver(program); }));
  started(program);
  server_.type("ghbdtn hello ");
  const auto problem = whatIsWrongWithText(before, promises);
  program.send(SIGTERM);
  const int status = program.exitStatus();
  if (!problem.empty()) return problem;
  if (status < 0) return "it ends";
  // On its way out it no longer hears of signals.
  const bool wasEnding = !promises.noKeyIsLost && status == 128 + SIGTERM;
  const bool hung = promises.itMayHang && status == 128 + SIGKILL;
  if (status > 2 && !wasEnding && !hung) return "it ends by itself: " + std::to_string(status);
  const auto errors = program.errors();
  const auto wrong = whatIsWrongWithErrors(errors, status, promises.itCorrects);
  return wrong.empty() ? whatIsWrongAtTheEnd(errors, callsOf("worker")) : wrong;
}

std::string FaultTest::whatIsWrongWithText(const std::string& before,
                                           const Promises& promises) const {
  static const std::set<std::string> kShown = {"ghbdtn hello ", "привет hello ", "ghbdtn руддщ ",
                                               "привет руддщ "};
  const auto isDone = [&] {
    const auto typed = window_.text().substr(before.size());
    return promises.itCorrects ? typed == "привет hello " : kShown.contains(typed);
  };
  const bool isShown = waitUntil(isDone, promises.noKeyIsLost ? kPatience : 1);
  if (isShown || !promises.noKeyIsLost) return {};
  return "no key is lost: " + window_.text().substr(before.size());
}

/// The keyboard is free, no key is down, and what is typed comes out.
std::string FaultTest::whatIsLeft() {
  if (!waitUntil([this] { return !server_.isKeyboardHeld(); })) return "the keyboard is free";
  if (!waitUntil([this] { return server_.keysDown().empty(); })) return "no key stays down";
  server_.lockGroup(0);
  const auto before = window_.text();
  server_.type("vbh\n");
  if (!window_.shows(before + "vbh\n")) return "keys come out afterwards: " + window_.text();
  return {};
}

}  // namespace tessarok::testing

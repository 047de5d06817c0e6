// Every call of sd-bus is made to fail in turn, while a person types and the rest of the session
// uses the program.

#include <algorithm>
#include <cerrno>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "tests/desktops/freedesktop/FakeSession.h"
#include "tests/desktops/x11/FaultTest.h"
#include "tests/desktops/x11/Patience.h"

namespace tessarok::testing {
namespace {

/// Seconds that a program that lacks one thing may take to find the rest; it takes a tenth of this.
constexpr double kUntilFound = 0.1;
/// A life takes some hundred turns of the main loop; one that is busy with a descriptor that is
/// always ready, tens of thousands.
constexpr int kMostTurns = 2000;

class BusFaults : public FaultTest {
 protected:
  [[nodiscard]] std::vector<int> errorsOf(const std::string& call) const override {
    static const std::map<std::string, std::vector<int>> kErrors = {
        {"sd_bus_open_user", {ECONNREFUSED, ENOMEDIUM}},
        {"sd_bus_open_system", {ECONNREFUSED, ENOMEDIUM}},
        {"sd_bus_start", {ECONNREFUSED, EAGAIN}},
        {"sd_bus_process", {ECONNRESET, ENOTCONN, ENOMEM, ETIMEDOUT}},
        {"sd_bus_send", {ENOTCONN, ENOBUFS}},
        {"sd_bus_call_async", {ENOTCONN, ENOBUFS}},
        {"sd_bus_get_fd", {ENOTCONN}},
        {"sd_bus_get_events", {ENOTCONN}},
        {"sd_bus_get_timeout", {ENOTCONN}},
        {"sd_bus_message_enter_container", {EBADMSG}},
        {"sd_bus_message_exit_container", {EBADMSG}},
        {"sd_bus_message_read", {EBADMSG}},
        {"sd_bus_message_read_basic", {EBADMSG}},
        {"sd_bus_message_skip", {EBADMSG}},
    };
    if (!call.starts_with("sd_bus_")) return {};
    const auto found = kErrors.find(call);
    return found == kErrors.end() ? std::vector<int>{ENOMEM} : found->second;
  }
  [[nodiscard]] Promises promisesWith(const Failure&) const override {
    return {.noKeyIsLost = true, .itCorrects = true};
  }
  [[nodiscard]] std::map<std::string, std::string> environment() const override {
    auto variables = session_.environment();
    // Where no program is found that opens files, which is told in a notification.
    variables["PATH"] = "/nonexistent";
    return variables;
  }
  void started(const Tessarok& program) override {
    static_cast<void>(waitUntil([&] {
      session_.serve();
      return session_.isFound() || saysWhatIsMissing(program.errors());
    }));
    // What can be found is, by then.
    if (!session_.isFound()) {
      static_cast<void>(waitUntil([this] { return session_.serve(), false; }, kUntilFound));
    }
    session_.beBusy();
    // The notice comes from a queue, and a refusal of it goes back to the program, which must
    // still be there.
    static_cast<void>(waitUntil([&] { return isOpeningTold(program.errors()); }));
  }
  [[nodiscard]] std::string whatIsWrongAtTheEnd(const std::string& errors,
                                                const Calls& calls) override {
    const auto problem = whatIsWrongWithMessages(errors);
    session_.reset();
    if (!problem.empty()) return problem;
    const int turns = calls.at("poll");
    return turns > kMostTurns ? "it waits: " + std::to_string(turns) + " turns" : "";
  }

 private:
  [[nodiscard]] static bool saysWhatIsMissing(const std::string& errors) {
    // The panel is waited for; the others are not.
    for (const auto* missing : {" bus", "login manager", "no panel"}) {
      if (errors.find(missing) != std::string::npos) return true;
    }
    return false;
  }
  [[nodiscard]] static bool logsNoticeIn(const std::string& errors) {
    return errors.find("Cannot open") != std::string::npos;
  }
  /// Also when nothing was to be opened.
  [[nodiscard]] bool isOpeningTold(const std::string& errors) {
    session_.serve();
    return !session_.isFileChosen() || session_.isNotified() || logsNoticeIn(errors);
  }
  [[nodiscard]] std::string whatIsWrongWithMessages(const std::string& errors) {
    const bool logsNotice = logsNoticeIn(errors);
    if (!waitUntil([&] { return isOpeningTold(errors); })) return "it says that no file is opened";
    if (!session_.isFound() && !saysWhatIsMissing(errors)) return "it says what is missing";
    // That it corrects, the notice, and one thing more.
    if (std::ranges::count(errors, '\n') > (logsNotice ? 3 : 2)) return "it says one thing";
    return {};
  }

  FakeSession session_;
};

TEST_F(BusFaults, BreakNoPromise) {
  makeAllFail();
}

}  // namespace
}  // namespace tessarok::testing

#pragma once

#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/desktops/x11/Applications.h"
#include "tests/desktops/x11/Tessarok.h"
#include "tests/desktops/x11/XServer.h"

namespace tessarok::testing {

/// The program lives once for every call that can fail, while a person types.
class FaultTest : public ::testing::Test {
 protected:
  /// How often a process makes each call.
  using Calls = std::map<std::string, int>;

  /// One of the program's two processes makes a call.
  struct Failure {
    /// Empty for the watchdog; else "worker".
    std::string process;
    std::string call;
    int number = 0;
    int error = 0;

    [[nodiscard]] std::string text() const;
  };
  /// What a failure leaves of the promises.
  struct Promises {
    bool noKeyIsLost = true;
    bool itCorrects = false;
    /// Where it hangs, the watchdog ends it.
    bool itMayHang = false;
  };

  /// Makes calls fail in turn, and expects the promises to be kept: all calls when the environment
  /// says so, else the first and the last of each kind, and one between.
  void makeAllFail();
  /// One life of the program, from its start to its end; what it did not keep of its promises.
  [[nodiscard]] std::string broken(const Failure& failure);

  /// What the calls of a kind may fail with; empty for those that are of no interest.
  [[nodiscard]] virtual std::vector<int> errorsOf(const std::string& call) const = 0;
  [[nodiscard]] virtual Promises promisesWith(const Failure& failure) const = 0;
  /// What the program's environment holds besides.
  [[nodiscard]] virtual std::map<std::string, std::string> environment() const { return {}; }
  /// The program has started, or failed to.
  virtual void started(const Tessarok&) {}
  /// What is wrong with all that it has said; the calls are those of the worker, if it has ended
  /// by itself.
  [[nodiscard]] virtual std::string whatIsWrongAtTheEnd(const std::string&, const Calls&) {
    return {};
  }

  /// Whether the program corrects, or says what it waits for, or has ended.
  [[nodiscard]] static bool isReadyOrOver(const Tessarok& program);

  XServer server_;
  GtkEntry window_{server_};

 private:
  [[nodiscard]] std::map<std::string, Calls> counts();
  [[nodiscard]] std::string live(const std::string& fault, const Promises& promises);
  [[nodiscard]] std::string watch(Tessarok& program, const Promises& promises);
  [[nodiscard]] std::string whatIsWrongWithText(const std::string& before,
                                                const Promises& promises) const;
  [[nodiscard]] std::string whatIsLeft();
  [[nodiscard]] Calls callsOf(const std::string& process) const;

  virtualdesktop::TemporaryDirectory folder_;
};

}  // namespace tessarok::testing

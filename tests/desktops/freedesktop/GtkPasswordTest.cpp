// A real GTK 3 password entry on a real accessibility bus.

#include <csignal>
#include <gtest/gtest.h>
#include <memory>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "desktops/freedesktop/AtSpiSecureInput.h"
#include "tests/desktops/freedesktop/BusDesktop.h"
#include "tests/desktops/freedesktop/PrivateBus.h"

namespace tessarok::testing {
namespace {

constexpr int kPatienceMilliseconds = 20'000;

/// A program that ends with the test, also when the test crashes.
class Program {
 public:
  explicit Program(std::vector<std::string> command) {
    process_ = ::fork();
    if (process_ != 0) return;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::vector<char*> arguments;
    for (auto& word : command)
      arguments.push_back(word.data());
    arguments.push_back(nullptr);
    ::execvp(arguments[0], arguments.data());
    ::_exit(127);
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program() {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
  void send(int signal) const { ::kill(process_, signal); }

 private:
  pid_t process_ = -1;
};

/// A display that is only memory.
class Screen {
 public:
  Screen() {
    int ends[2];
    if (::pipe(ends) != 0) throw std::runtime_error("cannot make a pipe");
    server_ = std::make_unique<Program>(
        std::vector<std::string>{"Xvfb", "-displayfd", std::to_string(ends[1]), "-noreset"});
    ::close(ends[1]);
    pollfd waiting{ends[0], POLLIN, 0};
    for (char byte = 0; byte != '\n'; name_ += byte) {
      if (::poll(&waiting, 1, kPatienceMilliseconds) <= 0 || ::read(ends[0], &byte, 1) != 1) {
        throw std::runtime_error("Xvfb does not start");
      }
    }
    ::close(ends[0]);
    name_.pop_back();
  }
  [[nodiscard]] const std::string& name() const { return name_; }

 private:
  std::unique_ptr<Program> server_;
  std::string name_ = ":";
};

TEST(GtkPassword, IsSecureWhileItHasTheFocus) {
  const Screen screen;
  // The accessibility bus is started by the session bus and wants a display.
  ::setenv("DISPLAY", screen.name().c_str(), 1);
  const PrivateBus bus(PrivateBus::Services::installed);
  ::setenv("DBUS_SESSION_BUS_ADDRESS", bus.address().c_str(), 1);
  BusDesktop desktop(bus.address());
  freedesktop::AtSpiSecureInput secureInput(desktop.session(), desktop.runLoop(),
                                            desktop.systemLog());
  ASSERT_TRUE(desktop.runLoop().until([&] { return secureInput.isListening(); }));

  ::unsetenv("NO_AT_BRIDGE");
  auto program = std::make_unique<Program>(std::vector<std::string>{TESSAROK_GTK_PASSWORD});
  const auto becomes = [&](bool secure) {
    return desktop.runLoop().until(
        [&] { return secureInput.isSettled() && secureInput.isEnabled() == secure; });
  };
  EXPECT_TRUE(becomes(true));
  program->send(SIGUSR1);
  EXPECT_TRUE(becomes(false));
  program->send(SIGUSR1);
  EXPECT_TRUE(becomes(true));
  program.reset();
  EXPECT_TRUE(becomes(false));
}

}  // namespace
}  // namespace tessarok::testing

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
#include "desktops/posix/FileDescriptor.h"
#include "tests/desktops/freedesktop/BusDesktop.h"
#include "tests/desktops/freedesktop/PrivateBus.h"
#include "tests/support/Signals.h"

namespace tessarok::testing {
namespace {

constexpr int kPatienceMilliseconds = 20'000;

/// A program that ends with the test, also when the test crashes.
class Program {
 public:
  explicit Program(std::vector<std::string> command) {
    int ends[2];
    if (::pipe(ends) != 0) throw std::runtime_error("cannot make a pipe");
    process_ = ::fork();
    output_ = posix::FileDescriptor(ends[0]);
    const posix::FileDescriptor itsOutput(ends[1]);
    if (process_ != 0) return;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::dup2(itsOutput.get(), STDOUT_FILENO);
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
    sendSignal(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
  void send(int signal) const { sendSignal(process_, signal); }
  /// Whether it has written something since it was asked the last time.
  [[nodiscard]] bool hasSpoken() const {
    char text[64];
    pollfd waiting{output_.get(), POLLIN, 0};
    return ::poll(&waiting, 1, 0) > 0 && ::read(output_.get(), text, sizeof text) > 0;
  }

 private:
  pid_t process_ = -1;
  posix::FileDescriptor output_;
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

class GtkPassword : public ::testing::Test {
 protected:
  void SetUp() override {
    // The accessibility bus is started by the session bus and wants a display.
    ::setenv("DISPLAY", screen_.name().c_str(), 1);
    ::unsetenv("NO_AT_BRIDGE");
    bus_ = std::make_unique<PrivateBus>(PrivateBus::Services::installed);
    ::setenv("DBUS_SESSION_BUS_ADDRESS", bus_->address().c_str(), 1);
    desktop_ = std::make_unique<BusDesktop>(bus_->address());
    secureInput_ = std::make_unique<freedesktop::AtSpiSecureInput>(
        desktop_->session(), desktop_->runLoop(), desktop_->systemLog());
    ASSERT_TRUE(desktop_->runLoop().until([&] { return secureInput_->isListening(); }));
  }
  void startProgram() {
    program_ = std::make_unique<Program>(std::vector<std::string>{TESSAROK_GTK_PASSWORD});
  }
  bool becomes(bool secure) {
    return desktop_->runLoop().until([&] {
      // Only what the test moves on passes.
      desktop_->base().wait(kTurn);
      return secureInput_->isSettled() && secureInput_->isEnabled() == secure;
    });
  }
  /// The process that programs announce themselves to; 0 when the bus does not know.
  pid_t registry() {
    std::string address;
    ask(*desktop_->session(), "org.a11y.Bus", "/org/a11y/bus", "GetAddress", nullptr,
        [&](sd_bus_message& reply) {
          const char* text = "";
          sd_bus_message_read(&reply, "s", &text);
          address = text;
        });
    std::string reason;
    const auto bus = freedesktop::Bus::openAddress(desktop_->runLoop(), address, reason);
    if (!bus) return 0;
    std::uint32_t process = 0;
    ask(*bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "GetConnectionUnixProcessID",
        "org.a11y.atspi.Registry",
        [&](sd_bus_message& reply) { sd_bus_message_read(&reply, "u", &process); });
    return static_cast<pid_t>(process);
  }

  Program& program() { return *program_; }
  void endProgram() { program_.reset(); }
  Pump& loop() { return desktop_->runLoop(); }

 private:
  /// Seconds that pass at each look.
  static constexpr double kTurn = 0.01;

  /// Calls a method of the interface that is named like its service.
  void ask(freedesktop::Bus& bus, const char* service, const char* path, const char* method,
           const char* argument, const freedesktop::BusSlot::Handler& answered) {
    bool done = false;
    auto call = bus.methodCall(service, path, service, method);
    if (argument != nullptr) sd_bus_message_append(call.get(), "s", argument);
    const auto slot = bus.call(std::move(call), [&](sd_bus_message& reply) {
      answered(reply);
      done = true;
    });
    EXPECT_TRUE(desktop_->runLoop().until([&] { return done; }));
  }

  const Screen screen_;
  std::unique_ptr<PrivateBus> bus_;
  std::unique_ptr<BusDesktop> desktop_;
  std::unique_ptr<freedesktop::AtSpiSecureInput> secureInput_;
  std::unique_ptr<Program> program_;
};

TEST_F(GtkPassword, IsSecureWhileItHasTheFocus) {
  startProgram();
  EXPECT_TRUE(becomes(true));
  program().send(SIGUSR1);
  EXPECT_TRUE(becomes(false));
  program().send(SIGUSR1);
  EXPECT_TRUE(becomes(true));
  endProgram();
  EXPECT_TRUE(becomes(false));
}

TEST_F(GtkPassword, IsSecureThoughItHadTheFocusBeforeTheProgramCouldTell) {
  const pid_t registry = this->registry();
  ASSERT_GT(registry, 0);
  ASSERT_EQ(::kill(registry, SIGSTOP), 0);
  startProgram();
  // It is in the password entry by then, and nobody has told it that anybody listens.
  EXPECT_TRUE(loop().until([this] { return program().hasSpoken(); }));
  ASSERT_EQ(::kill(registry, SIGCONT), 0);
  EXPECT_TRUE(becomes(true));
}

}  // namespace
}  // namespace tessarok::testing

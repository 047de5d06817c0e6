#include "tests/desktops/freedesktop/PrivateBus.h"

#include <csignal>
#include <fcntl.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/Signals.h"
#include "tests/support/TestFiles.h"

namespace tessarok::testing {

namespace {

std::string configuration(const std::string& folder, PrivateBus::Services services) {
  const bool starts = services == PrivateBus::Services::installed;
  return "<busconfig><type>session</type><listen>unix:path=" + folder +
         "/bus</listen><auth>EXTERNAL</auth>"
         // As on every session bus; the daemon's own limit is reached by typing fast.
         "<limit name='max_replies_per_connection'>50000</limit>" +
         (starts ? "<standard_session_servicedirs/>" : "") +
         "<policy context='default'>"
         "<allow send_destination='*' eavesdrop='true'/><allow eavesdrop='true'/>"
         "<allow own='*'/></policy></busconfig>";
}

[[noreturn]] void becomeDaemon(const std::string& option, int output) {
  // A test that crashes leaves no bus behind.
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  ::dup2(output, STDOUT_FILENO);
  ::execlp("dbus-daemon", "dbus-daemon", option.c_str(), "--nofork", "--nosyslog",
           "--print-address", nullptr);
  ::_exit(127);
}

std::string readLine(int descriptor) {
  std::string line;
  for (char c = 0; ::read(descriptor, &c, 1) == 1 && c != '\n';)
    line += c;
  return line;
}

}  // namespace

PrivateBus::PrivateBus(Services services) {
  const auto file = folder_.path() / "bus.conf";
  writeFile(file, configuration(folder_.path().string(), services));
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("cannot make a pipe");
  process_ = ::fork();
  if (process_ == 0) becomeDaemon("--config-file=" + file.string(), ends[1]);
  ::close(ends[1]);
  address_ = readLine(ends[0]);
  ::close(ends[0]);
  if (address_.empty()) throw std::runtime_error("dbus-daemon does not start");
}

void PrivateBus::hang() {
  sendSignal(process_, SIGSTOP);
}

void PrivateBus::stop() {
  if (process_ <= 0) return;
  sendSignal(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
  process_ = -1;
}

}  // namespace tessarok::testing

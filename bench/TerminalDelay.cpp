// What the program costs in a terminal: from a key to its echo, for 100 MB of output, and from
// start to end, each without anything in between, with the program, with tmux, which sits in the
// same place, and with a relay that only hands on bytes: less nothing in between can take. Prints
// JSON.
//
// usage: tessarok_terminal_bench RESOURCES [KEYS [MEGABYTES [STARTS]]]

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <stdexcept>
#include <string>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "desktops/virtual/TemporaryDirectory.h"

namespace {

using Clock = std::chrono::steady_clock;
using Command = std::vector<std::string>;

constexpr int kPatienceMilliseconds = 20'000;
/// Keys that are typed into one terminal before it is the next one's turn.
constexpr int kKeysInTurn = 100;
/// A person is slower; so long that nothing of the key before is still under way.
constexpr auto kBetweenKeys = std::chrono::milliseconds(3);
constexpr std::string_view kReady = "ready>";
constexpr std::string_view kText =
    "the quick brown fox jumps over the lazy dog while nobody is looking at the keyboard\r";

double milliseconds(Clock::time_point since) {
  return std::chrono::duration<double, std::milli>(Clock::now() - since).count();
}

/// A program in a terminal of its own.
class Window {
 public:
  explicit Window(const Command& command) {
    winsize size{50, 120, 0, 0};
    process_ = ::forkpty(&terminal_, nullptr, nullptr, &size);
    if (process_ < 0) throw std::runtime_error("no pseudo-terminal");
    if (process_ > 0) return;
    std::vector<char*> words;
    for (const auto& word : command)
      words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    ::execvp(words.front(), words.data());
    ::_exit(127);
  }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  ~Window() {
    ::close(terminal_);
    if (process_ <= 0) return;
    // A shell ignores a polite one.
    ::kill(process_, SIGHUP);
    ::waitpid(process_, nullptr, 0);
  }

  void press(char key) const {
    if (::write(terminal_, &key, 1) != 1) throw std::runtime_error("the terminal takes no key");
  }

  /// What comes next; empty at the end.
  std::string_view read() {
    pollfd waiting{terminal_, POLLIN, 0};
    if (::poll(&waiting, 1, kPatienceMilliseconds) <= 0) throw std::runtime_error("nothing came");
    const auto count = ::read(terminal_, chunk_.data(), chunk_.size());
    return {chunk_.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
  }

  void waitFor(std::string_view text) {
    std::string seen;
    while (seen.find(text) == std::string::npos) {
      const auto more = read();
      if (more.empty()) throw std::runtime_error("the program ended: " + seen);
      seen += more;
    }
  }

  /// Whatever still comes within a moment.
  void skip() {
    pollfd waiting{terminal_, POLLIN, 0};
    while (::poll(&waiting, 1, 20) > 0 && !read().empty()) {
    }
  }

  void waitForEnd() {
    while (!read().empty()) {
    }
    int status = 0;
    ::waitpid(std::exchange(process_, -1), &status, 0);
    if (status != 0) throw std::runtime_error("the program failed");
  }

 private:
  int terminal_ = -1;
  pid_t process_ = -1;
  std::array<char, 65536> chunk_;
};

/// The simplest line editor: it shows what it reads.
int echo() {
  termios settings{};
  ::tcgetattr(STDIN_FILENO, &settings);
  ::cfmakeraw(&settings);
  settings.c_oflag |= OPOST;
  ::tcsetattr(STDIN_FILENO, TCSANOW, &settings);
  std::fputs("ready>", stdout);
  std::fflush(stdout);
  char key;
  while (::read(STDIN_FILENO, &key, 1) == 1) {
    const auto shown = key == '\r' ? std::string_view("\r\n") : std::string_view(&key, 1);
    if (::write(STDOUT_FILENO, shown.data(), shown.size()) < 0) break;
  }
  return EXIT_SUCCESS;
}

/// Hands on what comes from one side; whether there was anything.
bool handOn(int from, int to) {
  std::array<char, 65536> chunk;
  const auto count = ::read(from, chunk.data(), chunk.size());
  if (count <= 0) return false;
  for (ssize_t done = 0; done < count;) {
    const auto written = ::write(to, chunk.data() + done, static_cast<std::size_t>(count - done));
    if (written < 0) return false;
    done += written;
  }
  return true;
}

/// A program in a terminal within this one, and nothing done with what passes.
int relay(char** command) {
  termios outer{};
  winsize size{};
  ::tcgetattr(STDIN_FILENO, &outer);
  ::ioctl(STDIN_FILENO, TIOCGWINSZ, &size);
  int terminal = -1;
  const auto process = ::forkpty(&terminal, nullptr, &outer, &size);
  if (process < 0) return EXIT_FAILURE;
  if (process == 0) {
    ::execvp(command[0], command);
    ::_exit(127);
  }
  auto raw = outer;
  ::cfmakeraw(&raw);
  ::tcsetattr(STDIN_FILENO, TCSANOW, &raw);
  std::array<pollfd, 2> waiting = {pollfd{STDIN_FILENO, POLLIN, 0}, pollfd{terminal, POLLIN, 0}};
  while (::poll(waiting.data(), waiting.size(), -1) > 0) {
    if (waiting[0].revents != 0 && !handOn(STDIN_FILENO, terminal)) break;
    if (waiting[1].revents != 0 && !handOn(terminal, STDOUT_FILENO)) break;
  }
  int status = 0;
  ::waitpid(process, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : EXIT_FAILURE;
}

/// How programs are started in between: by name, what comes before a command.
using Ways = std::map<std::string, Command>;

Command within(const Command& way, const Command& command) {
  auto whole = way;
  whole.insert(whole.end(), command.begin(), command.end());
  return whole;
}

nlohmann::json summaryOf(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const auto at = [&](double share) {
    return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
  };
  return {{"median", at(0.5)}, {"p99", at(0.99)}, {"count", values.size()}};
}

/// Milliseconds from each key to what the program shows for it, in turns, so that whatever else the
/// machine does meets all of them.
nlohmann::json keyDelays(const Ways& ways, const Command& program, int keys) {
  std::map<std::string, std::unique_ptr<Window>> windows;
  std::map<std::string, std::vector<double>> delays;
  for (const auto& [name, way] : ways) {
    auto& window = windows[name] = std::make_unique<Window>(within(way, program));
    window->waitFor(kReady);
    window->skip();
  }
  for (int done = 0; done < keys; done += kKeysInTurn) {
    for (auto& [name, window] : windows) {
      for (int i = 0; i < kKeysInTurn; ++i) {
        const char key = kText[static_cast<std::size_t>(done + i) % kText.size()];
        const auto start = Clock::now();
        window->press(key);
        static_cast<void>(window->read());
        delays[name].push_back(milliseconds(start));
        if (key == '\r') window->skip();
        std::this_thread::sleep_for(kBetweenKeys);
      }
      window->skip();
    }
  }
  nlohmann::json result;
  for (auto& [name, values] : delays)
    result[name] = summaryOf(std::move(values));
  return result;
}

/// Milliseconds until a program has ended, everything that it writes read.
nlohmann::json durations(const Ways& ways, const Command& program, int times) {
  std::map<std::string, std::vector<double>> taken;
  for (int i = 0; i < times; ++i) {
    for (const auto& [name, way] : ways) {
      const auto start = Clock::now();
      Window window(within(way, program));
      window.waitForEnd();
      taken[name].push_back(milliseconds(start));
    }
  }
  nlohmann::json result;
  for (auto& [name, values] : taken)
    result[name] = summaryOf(std::move(values));
  return result;
}

void writeText(const std::filesystem::path& path, int megabytes) {
  constexpr std::string_view kLine =
      "drwxr-xr-x  2 person person    4096 Jan  1 12:00 some/folder/with/a/name/as/usual.txt\n";
  std::ofstream file(path, std::ios::binary);
  const auto size = static_cast<std::size_t>(megabytes) * 1000 * 1000;
  for (std::size_t done = 0; done < size; done += kLine.size())
    file << kLine;
}

/// tmux as plain as it gets, and ended with the measurement.
class Tmux {
 public:
  explicit Tmux(const std::filesystem::path& folder)
      : socket_((folder / "tmux").string()), settings_((folder / "tmux.conf").string()) {
    std::ofstream(settings_) << "set -g status off\nset -s escape-time 0\n";
  }
  Tmux(const Tmux&) = delete;
  Tmux& operator=(const Tmux&) = delete;
  ~Tmux() {
    // Fails where it has ended with its last window.
    const int status = std::system(("tmux -S " + socket_ + " kill-server 2> /dev/null").c_str());
    static_cast<void>(status);
  }

  [[nodiscard]] static bool isInstalled() {
    return std::system("command -v tmux > /dev/null") == 0;
  }
  [[nodiscard]] Command way() const {
    return {"tmux", "-f", settings_, "-S", socket_, "new-session"};
  }

 private:
  std::string socket_;
  std::string settings_;
};

int numberAt(int argc, char** argv, int index, int usual) {
  return argc > index ? std::atoi(argv[index]) : usual;
}

int measure(int argc, char** argv) {
  const tessarok::virtualdesktop::TemporaryDirectory home;
  ::setenv("HOME", home.path().c_str(), 1);
  ::setenv("TERM", "xterm-256color", 1);
  ::setenv("LC_ALL", "C.UTF-8", 1);
  ::setenv("PS1", "ready> ", 1);
  for (const char* name : {"TMUX", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "TESSAROK_TERMINAL"})
    ::unsetenv(name);
  const Tmux tmux(home.path());
  Ways ways = {{"without", {}},
               {"tessarok", {TESSAROK_PROGRAM, "--resources", argv[1], "terminal", "--"}}};
  const auto self = std::filesystem::read_symlink("/proc/self/exe").string();
  ways["relay"] = {self, "--relay"};
  if (Tmux::isInstalled()) ways["tmux"] = tmux.way();
  const int keys = numberAt(argc, argv, 2, 3000);
  const int megabytes = numberAt(argc, argv, 3, 100);
  const int starts = numberAt(argc, argv, 4, 40);
  const auto text = (home.path() / "text").string();
  writeText(text, megabytes);
  nlohmann::json result;
  result["echo"] = keyDelays(ways, {self, "--echo"}, keys);
  result["shell"] = keyDelays(ways, {"bash", "--norc"}, keys);
  result["output"] = durations(ways, {"cat", text}, 5);
  result["start"] = durations(ways, {"true"}, starts);
  std::printf("%s\n", result.dump(1).c_str());
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 1 && std::strcmp(argv[1], "--echo") == 0) return echo();
  if (argc > 2 && std::strcmp(argv[1], "--relay") == 0) return relay(argv + 2);
  if (argc < 2) {
    std::fprintf(stderr, "usage: tessarok_terminal_bench RESOURCES [KEYS [MEGABYTES [STARTS]]]\n");
    return 2;
  }
  try {
    return measure(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tessarok_terminal_bench: %s\n", error.what());
    return EXIT_FAILURE;
  }
}

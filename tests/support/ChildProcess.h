#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace tessarok::testing {

/// What a finished program has left.
struct ProgramRun {
  /// The exit status; 128 and the signal's number for a program that a signal ended.
  int status = -1;
  std::string out;
  std::string err;
};

/// Runs the program with these arguments to its end. `environment` sets variables besides those
/// of this process, of which the language is not taken; `folder` is the working directory.
[[nodiscard]] ProgramRun runProgram(
    const std::vector<std::string>& arguments, std::string_view input = {},
    const std::vector<std::pair<std::string, std::string>>& environment = {},
    const std::optional<std::string>& folder = std::nullopt);
/// The same with whatever `path` names, a directory too, as standard input.
[[nodiscard]] ProgramRun runProgramReading(const std::string& path,
                                           const std::vector<std::string>& arguments);

/// The program running beside the test, spoken to line by line. Killed when the object goes.
class ChildProcess {
 public:
  explicit ChildProcess(const std::vector<std::string>& arguments);
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess();

  /// False when the program no longer reads.
  bool send(std::string_view lines);
  /// The next line that the program prints, waited for; absent at the end of its output.
  [[nodiscard]] std::optional<std::string> receive();
  /// No more input follows; the exit status.
  int finish();
  /// Ends the program at once, whatever it does.
  void kill();

 private:
  int wait();

  pid_t process_ = -1;
  int input_ = -1;
  int output_ = -1;
  std::string received_;
};

}  // namespace tessarok::testing

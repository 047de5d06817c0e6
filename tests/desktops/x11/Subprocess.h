#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tessarok::testing {

/// A program beside the test, ended with it: also when the test itself is killed.
class Subprocess {
 public:
  struct Setup {
    /// Variables besides those of the test; an empty value unsets one.
    std::map<std::string, std::string> environment;
    /// Where standard error goes; absent for nowhere.
    std::optional<std::filesystem::path> errors;
    /// Inherited by the program under its own number; -1 for none.
    int descriptor = -1;
    /// The terminal that the program is started in; -1 for none.
    int terminal = -1;
  };

  /// Throws when there is no such program: the message names `package`, which has it.
  Subprocess(const std::vector<std::string>& command, const std::string& package,
             const Setup& setup);
  Subprocess(const Subprocess&) = delete;
  Subprocess& operator=(const Subprocess&) = delete;
  ~Subprocess();

  void send(int signal) const;
  [[nodiscard]] pid_t process() const { return process_; }
  /// Waits for the end; the exit status, 128 and the signal's number, or -1 when it does not end.
  [[nodiscard]] int exitStatus();

 private:
  pid_t process_ = -1;
};

}  // namespace tessarok::testing

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <termios.h>
#include <vector>

#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/support/ProcessMemory.h"

namespace tessarok::testing {

/// A person in front of a terminal in which `tessarok terminal` runs a program: a pseudo-terminal,
/// a home directory, and patience that ends after a while. The word data is that of the tests.
class UserAtTerminal {
 public:
  struct Setup {
    /// The directory of the word data.
    std::filesystem::path resources = TESSAROK_TEST_DATA;
    unsigned short rows = 24;
    unsigned short columns = 80;
    /// The erase character of the terminal.
    char erase = '\x7f';
    /// Another person's home; empty for one of its own.
    std::filesystem::path home = {};
  };

  explicit UserAtTerminal(const std::vector<std::string>& command);
  UserAtTerminal(const std::vector<std::string>& command, const Setup& setup);
  UserAtTerminal(const UserAtTerminal&) = delete;
  UserAtTerminal& operator=(const UserAtTerminal&) = delete;
  ~UserAtTerminal();

  /// Presses keys, all at once; reads the screen meanwhile when the keys are many.
  void type(std::string_view keys);
  /// Presses keys until the terminal takes no more for a while; how many bytes it took.
  [[nodiscard]] std::size_t typeUntilStuck(std::string_view keys);
  /// Whether the screen shows the text after everything waited for before; waits for it.
  [[nodiscard]] bool sees(std::string_view text);
  /// Everything that was written to the screen.
  [[nodiscard]] const std::string& screen() const { return screen_; }
  /// Whether what runs in it has ended, and the corrector knows; waits for it.
  [[nodiscard]] bool programHasEnded() const;
  void resize(unsigned short rows, unsigned short columns);
  void send(int signal) const;
  /// The terminal takes nothing more, as in a window that hangs.
  void stopScreen() const;
  /// The memory of the program that is its own, kB.
  [[nodiscard]] long privateMemory() const { return privateMemoryOf(process_); }
  /// Closes the terminal's window.
  void hangUp();
  /// Reads the screen until the program has ended; its exit status, or 128 and the signal that
  /// ended it. -1 when it does not end.
  [[nodiscard]] int exitStatus();
  /// The same without looking at the screen.
  [[nodiscard]] int exitStatusUnread();

  /// The settings of the terminal, as they are now, and as they were before the program started.
  [[nodiscard]] termios settings() const;
  [[nodiscard]] const termios& formerSettings() const { return formerSettings_; }
  [[nodiscard]] const std::filesystem::path& home() const { return home_; }
  /// The folder with what was learned.
  [[nodiscard]] std::filesystem::path learned() const;

 private:
  [[nodiscard]] std::optional<int> endedStatus();
  /// False when nothing more comes.
  bool readScreen(int milliseconds);

  virtualdesktop::TemporaryDirectory folder_;
  std::filesystem::path home_;
  int terminal_ = -1;
  /// Keeps the terminal alive when the program has gone, so that its settings can be looked at.
  int keeper_ = -1;
  pid_t process_ = -1;
  termios formerSettings_{};
  std::string screen_;
  std::size_t seen_ = 0;
};

/// The content of a file; empty when there is none.
[[nodiscard]] std::string contentOf(const std::filesystem::path& file);

/// Waits until a file has this content.
[[nodiscard]] bool becomes(const std::filesystem::path& file, std::string_view content);

}  // namespace tessarok::testing

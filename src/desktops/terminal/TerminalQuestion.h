#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tessarok::terminal {

/// A question to the terminal of standard input. The answer comes among the keys: nothing is read
/// before so much has come at once that it may be there, so that where nobody answers what is typed
/// stays for the next program; only a paste in that moment is lost. Main thread.
struct TerminalQuestion {
  std::string_view text;
  /// The answer stands between these.
  std::string_view before;
  std::string_view after;
  /// Milliseconds.
  int patience;
  /// Where it is written.
  int output;

  struct Answer {
    std::string text;
    /// What was typed, and had to be read to get there.
    std::string keys;
  };
  /// Waits for the answer; absent when none comes in time, or when the terminal is another
  /// program's.
  [[nodiscard]] std::optional<Answer> ask() const;
};

}  // namespace tessarok::terminal

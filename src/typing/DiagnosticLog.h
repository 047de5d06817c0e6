#pragma once

#include <string>

namespace tessarok {

/// The opt-in log file of keystroke decisions: on when TESSAROK_DEBUG is in the environment, in
/// the file named by TESSAROK_DEBUG_PATH or else in "tessarok.log" in the home directory. Lines
/// are written on a serial queue of their own, so the event tap never waits for the disk.
class DiagnosticLog {
 public:
  DiagnosticLog() = delete;
  /// Decided on first use, for the life of the process. Main thread.
  [[nodiscard]] static bool isOn();
  /// Hands one line to the queue; does nothing when the log is off. Main thread.
  static void write(std::string message);
  /// How a line spells a yes or no.
  [[nodiscard]] static const char* spelled(bool value) { return value ? "true" : "false"; }
  /// Waits until every line so far is in the file.
  static void drain();
};

}  // namespace tessarok

#pragma once

#include <optional>
#include <string>

#include "words/Language.h"

namespace tessarok::commands {

/// How a corrected terminal stands.
struct TerminalStatus {
  bool isOn = false;
  Language layout = Language::english;
};

/// A line for the person, in their language.
[[nodiscard]] std::string describe(const TerminalStatus& status);

/// Asks the corrected terminal that this runs in, also at the other end of ssh, for "on", "off",
/// "layout", "pause" or only its "status"; how it stands then. Absent when standard input is not a
/// terminal, or none that is corrected.
[[nodiscard]] std::optional<TerminalStatus> askTerminal(const std::string& request);

}  // namespace tessarok::commands

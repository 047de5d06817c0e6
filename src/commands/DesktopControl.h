#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tessarok::commands {

/// What the corrector of this desktop says of itself.
struct DesktopStatus {
  std::string version;
  /// Which desktop it serves: "x11", "fcitx5" or "ibus".
  std::string desktop;
  std::uint32_t process = 0;
  /// When it started, in seconds since 1970.
  std::int64_t since = 0;
  /// "on", "off", "paused", "by hand" (there is no word data), or "waiting" (for keys or layouts).
  std::string correction;
  /// Whether it is switched on, also while it waits.
  bool isEnabled = true;
  /// The names of the layout that is on and of all enabled ones, such as "us".
  std::string layout;
  std::vector<std::string> layouts;
  /// What does not work and why, a sentence each.
  std::vector<std::string> obstacles;
};

/// What can be asked of it.
enum class DesktopRequest { on, off, pause, quit };

/// Asks the corrector that runs in the person's session; absent when there is none, or none that
/// answers within two seconds.
[[nodiscard]] std::optional<DesktopStatus> askDesktop();

/// Why none may answer, and what to do, a sentence each, in the person's language.
[[nodiscard]] std::vector<std::string> obstaclesToDesktop();

/// Whether one that sits on a whole desktop runs, also inside Fcitx5, as its lock tells.
[[nodiscard]] bool isDesktopHeld();

/// That one runs all the same, and cannot be reached, as a sentence in the person's language;
/// absent when none is known to run.
[[nodiscard]] std::optional<std::string> unreachableDesktop();

/// Tells somebody who started the program from a menu, and sees no terminal, why nothing happens:
/// by a notification, where such are shown.
void showWhyNotStarted();

/// Whether it was told.
[[nodiscard]] bool tellDesktop(DesktopRequest request);

}  // namespace tessarok::commands

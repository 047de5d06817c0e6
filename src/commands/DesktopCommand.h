#pragma once

#include <optional>

#include "commands/Options.h"

namespace tessarok::commands {

/// Who waits for the program to start. Whoever logs in has not asked for it, and is told nothing of
/// what stands in its way.
enum class StartedBy { person, session };

/// Whether there is a display whose applications could be corrected.
[[nodiscard]] bool hasDisplay();

/// Corrects what is typed into every application of the display, until it is ended by a signal,
/// from its menu, or with the display. The exit status; absent when it could not start, after
/// telling the person why on standard error.
[[nodiscard]] std::optional<int> runDesktop(const Options& options,
                                            StartedBy startedBy = StartedBy::person);

/// The same at login, where it may have nothing to do: in a Wayland session, whose X server sees
/// few of the keys, where Fcitx5 corrects, and where another copy runs. The exit status, which is
/// success in all these cases.
[[nodiscard]] int runDesktopOfSession(const Options& options);

}  // namespace tessarok::commands

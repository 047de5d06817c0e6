#pragma once

namespace tessarok::macos {

/// Runs Tessarok.app. Returns only where the system's event loop does: on a Mac the process ends
/// inside of it. Main thread, once a process.
void runProgram();

}  // namespace tessarok::macos

#pragma once

#include <memory>

#include "platform/Files.h"
#include "platform/SystemLog.h"
#include "platform/UserDefaults.h"

namespace tessarok::commands {

/// The switches of the person who runs a command, as the program that corrects in every application
/// keeps them on this system. `files` and `log` outlive the answer. Main thread.
[[nodiscard]] std::unique_ptr<platform::UserDefaults> personsSwitches(platform::Files& files,
                                                                      platform::SystemLog& log);

}  // namespace tessarok::commands

#pragma once

#include <nlohmann/json.hpp>

#include "app/AppDelegate.h"
#include "desktops/virtual/VirtualFiles.h"
#include "desktops/virtual/VirtualStatusBar.h"
#include "desktops/virtual/VirtualSystemLog.h"
#include "platform/Files.h"
#include "platform/Menu.h"

/// The state of the program as the fields of a replay's "print" lines give it, on any desktop whose
/// parts can be read. What waits to be written is written first. Main thread.
namespace tessarok::virtualdesktop::programValues {

using nlohmann::json;

[[nodiscard]] json state();
[[nodiscard]] json lists();
[[nodiscard]] json tap(const AppDelegate& delegate);
[[nodiscard]] json icon(const VirtualStatusBar& statusBar);
/// Null gives an empty menu.
[[nodiscard]] json menu(const platform::Menu* menu);
/// The texts of the per-user files by their names.
[[nodiscard]] json files(platform::Files& files);
/// The lines since the last call.
[[nodiscard]] json diagnosticLog(VirtualFiles& files);
[[nodiscard]] json systemLog(VirtualSystemLog& log);

}  // namespace tessarok::virtualdesktop::programValues

#include "typing/DiagnosticLog.h"

#include <filesystem>
#include <utility>

#include "platform/Desktop.h"

namespace tessarok {

namespace {

/// A log that has grown past this size, in bytes, starts again empty; no older copy is kept.
constexpr std::uint64_t kRestartAbove = 1048576;

const std::filesystem::path& logPath() {
  static const std::filesystem::path path = [] {
    auto& desktop = platform::desktop();
    if (const auto named = desktop.environment().variable("TESSAROK_DEBUG_PATH")) {
      return std::filesystem::path(*named);
    }
    return desktop.files().homeDirectory() / "tessarok.log";
  }();
  return path;
}

platform::SerialQueue& queue() {
  static const auto instance = platform::desktop().serialQueues().create("app.tessarok.dbg");
  return *instance;
}

}  // namespace

bool DiagnosticLog::isOn() {
  static const bool on = platform::desktop().environment().variable("TESSAROK_DEBUG").has_value();
  return on;
}

void DiagnosticLog::write(std::string message) {
  if (!isOn()) return;
  message += '\n';
  queue().async([text = std::move(message), path = logPath()] {
    platform::desktop().files().appendToLog(path, text, kRestartAbove);
  });
}

void DiagnosticLog::drain() {
  if (isOn()) queue().drain();
}

}  // namespace tessarok

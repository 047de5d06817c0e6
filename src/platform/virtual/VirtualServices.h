#pragma once

#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "platform/Accessibility.h"
#include "platform/Application.h"
#include "platform/Environment.h"
#include "platform/Events.h"
#include "platform/PlainEventSource.h"
#include "platform/SecureInput.h"
#include "platform/SystemLog.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"
#include "platform/posix/ProcessEnvironment.h"
#include "platform/virtual/VirtualEvent.h"

/// The services of the virtual desktop that hold a value or two and do nothing else.
namespace tessarok::virtualdesktop {

class VirtualSecureInput final : public platform::SecureInput {
 public:
  bool isEnabled() override { return on; }
  bool on = false;
};

class VirtualAccessibility final : public platform::Accessibility {
 public:
  bool isProcessTrusted(bool) override { return trusted; }
  bool trusted = true;
};

class VirtualUserDefaults final : public platform::UserDefaults {
 public:
  std::optional<bool> boolean(std::string_view key) override {
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional(found->second);
  }
  void setBoolean(std::string_view key, bool value) override {
    values.insert_or_assign(std::string(key), value);
  }
  std::map<std::string, bool, std::less<>> values;
};

/// No other instance runs; asking to terminate is only noted.
class VirtualApplication final : public platform::Application {
 public:
  void becomeAccessory() override {}
  platform::RunningApplication self() override { return {.processIdentifier = 1, .launchDate = 0}; }
  std::vector<platform::RunningApplication> running(std::string_view) override { return {self()}; }
  void terminate() override { terminationRequested = true; }
  bool terminationRequested = false;
};

class VirtualWorkspace final : public platform::Workspace {
 public:
  void openFile(const std::filesystem::path& file) override { opened.push_back(file.string()); }
  void openUrl(std::string_view url) override { opened.emplace_back(url); }
  std::vector<std::string> opened;
};

/// Keeps messages in memory. Any thread.
class VirtualSystemLog final : public platform::SystemLog {
 public:
  void write(std::string_view message) override {
    const std::lock_guard lock(mutex_);
    messages_.emplace_back(message);
  }
  /// The messages since the last call.
  [[nodiscard]] std::vector<std::string> take() {
    const std::lock_guard lock(mutex_);
    return std::exchange(messages_, {});
  }

 private:
  std::mutex mutex_;
  std::vector<std::string> messages_;
};

/// The process's environment, but for the variables of the diagnostic log.
class VirtualEnvironment final : public platform::Environment {
 public:
  std::optional<std::string> variable(std::string_view name) override {
    if (name == "TESSAROK_DEBUG") return logs ? std::optional<std::string>("") : std::nullopt;
    if (name == "TESSAROK_DEBUG_PATH") return std::nullopt;
    return process_.variable(name);
  }
  /// The diagnostic log is on.
  bool logs = false;

 private:
  posix::ProcessEnvironment process_;
};

/// Creates events, or fails once when told so.
class VirtualEvents final : public platform::Events {
 public:
  std::unique_ptr<platform::EventSource> createPrivateSource() override {
    if (std::exchange(failsNextSource, false)) return nullptr;
    return std::make_unique<platform::PlainEventSource>();
  }
  std::unique_ptr<platform::Event> createKeyboardEvent(platform::EventSource&, std::int64_t keyCode,
                                                       bool keyDown) override {
    if (std::exchange(failsNextEvent, false)) return nullptr;
    auto event = std::make_unique<VirtualEvent>();
    event->type = keyDown ? platform::EventType::keyDown : platform::EventType::keyUp;
    event->code = keyCode;
    return event;
  }
  bool failsNextSource = false;
  bool failsNextEvent = false;
};

}  // namespace tessarok::virtualdesktop

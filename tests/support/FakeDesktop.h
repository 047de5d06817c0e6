#pragma once

#include <filesystem>
#include <string_view>

#include "desktops/virtual/TemporaryDirectory.h"
#include "desktops/virtual/VirtualDesktop.h"
#include "tests/support/FakeServices.h"
#include "tests/support/PartlyVirtualDesktop.h"

namespace tessarok::testing {

/// A virtual desktop some of whose services are the test's own, with a home and a data directory
/// that go away with it. It is the process's desktop from its making on.
class FakeDesktop final : public PartlyVirtualDesktop {
 public:
  FakeDesktop();
  FakeDesktop(const FakeDesktop&) = delete;
  FakeDesktop& operator=(const FakeDesktop&) = delete;
  /// Drains the program's queues, whose jobs use the desktop.
  ~FakeDesktop() override;

  [[nodiscard]] const std::filesystem::path& home() const { return home_.path(); }
  /// The folder of the program's per-user files; not made yet.
  [[nodiscard]] std::filesystem::path folder() const {
    return posix::PosixFiles::defaultDataHome(home()) / "Tessarok";
  }
  /// Puts a data file in place, found as the bundle's resource.
  void addResource(std::string_view name, std::string_view text);
  /// The same with a list of tests/data.
  void addAllTestData();
  [[nodiscard]] virtualdesktop::VirtualDesktop& base() override { return base_; }

  /// Services of the test's own instead of the virtual ones; null for those.
  struct Replaced {
    platform::Clock* clock = nullptr;
    platform::EventTaps* eventTaps = nullptr;
    platform::Events* events = nullptr;
    platform::SerialQueues* serialQueues = nullptr;
    platform::StatusBar* statusBar = nullptr;
  };
  Replaced replaced;

  FakeApplication& application() override { return application_; }
  FakeBundle& bundle() override { return bundle_; }
  FakeEnvironment& environment() override { return environment_; }
  FakeFiles& files() override { return files_; }
  FakeInputSources& inputSources() override { return inputSources_; }
  FakeKeyboard& keyboard() override { return keyboard_; }
  virtualdesktop::VirtualRunLoop& runLoop() override { return base_.runLoop(); }
  virtualdesktop::VirtualWorkspace& workspace() override { return base_.workspace(); }

  platform::Clock& clock() override { return replaced.clock ? *replaced.clock : base_.clock(); }
  platform::EventTaps& eventTaps() override {
    return replaced.eventTaps ? *replaced.eventTaps : base_.eventTaps();
  }
  platform::Events& events() override {
    return replaced.events ? *replaced.events : base_.events();
  }
  platform::SerialQueues& serialQueues() override {
    return replaced.serialQueues ? *replaced.serialQueues : base_.serialQueues();
  }
  platform::StatusBar& statusBar() override {
    return replaced.statusBar ? *replaced.statusBar : base_.statusBar();
  }

 private:
  virtualdesktop::TemporaryDirectory home_;
  virtualdesktop::TemporaryDirectory data_;
  virtualdesktop::VirtualDesktop base_;
  FakeApplication application_;
  FakeBundle bundle_;
  FakeEnvironment environment_;
  FakeFiles files_;
  FakeInputSources inputSources_;
  FakeKeyboard keyboard_;
};

}  // namespace tessarok::testing

#pragma once

#include <limits>
#include <memory>
#include <optional>
#include <unistd.h>
#include <utility>
#include <vector>

#include "platform/Accessibility.h"
#include "platform/Application.h"
#include "platform/Clock.h"
#include "platform/Events.h"
#include "platform/Keyboard.h"
#include "platform/SecureInput.h"
#include "platform/fcitx5/FcitxEvent.h"
#include "platform/fcitx5/KeyFlow.h"

/// The services of the Fcitx desktop that have next to nothing to do. Main thread.
namespace tessarok::fcitx5 {

/// An addon of Fcitx may see and send every key.
class FcitxAccessibility final : public platform::Accessibility {
 public:
  bool isProcessTrusted(bool) override { return true; }
};

/// The corrector as a part of Fcitx, which it must not end. Other copies are known by the lock.
class FcitxApplication final : public platform::Application {
 public:
  void becomeAccessory() override {}
  platform::RunningApplication self() override {
    return {.processIdentifier = ::getpid(), .launchDate = std::nullopt};
  }
  std::vector<platform::RunningApplication> running(std::string_view) override { return {self()}; }
  void terminate() override {
    if (onTerminate) onTerminate();
  }

  /// The corrector asks to be ended.
  std::function<void()> onTerminate;
};

class FcitxEvents final : public platform::Events {
 public:
  std::unique_ptr<platform::EventSource> createPrivateSource() override {
    return std::make_unique<FcitxEventSource>();
  }
  std::unique_ptr<platform::Event> createKeyboardEvent(platform::EventSource&, std::int64_t keyCode,
                                                       bool keyDown) override {
    auto event = std::make_unique<FcitxEvent>();
    event->type = keyDown ? platform::EventType::keyDown : platform::EventType::keyUp;
    event->code = keyCode;
    return event;
  }
};

/// The one keyboard that Fcitx takes all keyboards to be. It has the key beside the left Shift,
/// which counts only where its characters are its own.
class FcitxKeyboard final : public platform::Keyboard {
 public:
  /// Both outlive this object.
  FcitxKeyboard(platform::Clock& clock, const KeyFlow& flow) : clock_(clock), flow_(flow) {}

  std::uint32_t type() override { return 0; }
  platform::PhysicalLayoutType layoutType(std::uint32_t) override {
    return platform::PhysicalLayoutType::iso;
  }
  double secondsSinceLastKeyDown() override {
    const auto at = flow_.lastKeyDownAt();
    return at ? clock_.uptime() - *at : std::numeric_limits<double>::infinity();
  }

 private:
  platform::Clock& clock_;
  const KeyFlow& flow_;
};

/// The text field says that a password is typed there.
class FcitxSecureInput final : public platform::SecureInput {
 public:
  /// `flow` outlives this object.
  explicit FcitxSecureInput(const KeyFlow& flow) : flow_(flow) {}
  bool isEnabled() override { return flow_.isSecret(); }

 private:
  const KeyFlow& flow_;
};

}  // namespace tessarok::fcitx5

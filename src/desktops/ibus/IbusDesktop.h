#pragma once

#include <filesystem>
#include <ibus.h>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "desktops/freedesktop/Bus.h"
#include "desktops/freedesktop/FreedesktopWorkspace.h"
#include "desktops/freedesktop/Notice.h"
#include "desktops/freedesktop/Programs.h"
#include "desktops/freedesktop/SessionWatch.h"
#include "desktops/freedesktop/StatusNotifierBar.h"
#include "desktops/ibus/EngineListener.h"
#include "desktops/ibus/EngineSwitch.h"
#include "desktops/ibus/GlibRunLoop.h"
#include "desktops/ibus/IbusClient.h"
#include "desktops/ibus/IbusInputMethods.h"
#include "desktops/ibus/ShellExtension.h"
#include "desktops/ibus/ShellOutlet.h"
#include "desktops/ibus/SourceList.h"
#include "desktops/inputmethod/FieldEventTaps.h"
#include "desktops/inputmethod/FieldInputSources.h"
#include "desktops/inputmethod/FieldSecureInput.h"
#include "desktops/inputmethod/FrameworkApplication.h"
#include "desktops/inputmethod/Guard.h"
#include "desktops/inputmethod/KeyFlow.h"
#include "desktops/plain/FreeAccessibility.h"
#include "desktops/plain/OnlyKeyboard.h"
#include "desktops/plain/PlainEvents.h"
#include "desktops/posix/DataDirectoryBundle.h"
#include "desktops/posix/MonotonicClock.h"
#include "desktops/posix/NotificationCentre.h"
#include "desktops/posix/PosixFiles.h"
#include "desktops/posix/ProcessEnvironment.h"
#include "desktops/posix/SettingsFile.h"
#include "desktops/posix/StandardErrorLog.h"
#include "desktops/posix/ThreadQueues.h"
#include "platform/Desktop.h"

namespace tessarok::ibus {

/// The text fields of every program that IBus serves, as a desktop. Main thread.
class IbusDesktop final : public platform::Desktop, public EngineListener {
 public:
  /// Both outlive this object. `resources` is the directory of the data files, absent to search for
  /// it.
  IbusDesktop(IBusBus& bus, inputmethod::Guard& guard,
              std::optional<std::filesystem::path> resources);
  IbusDesktop(const IbusDesktop&) = delete;
  IbusDesktop& operator=(const IbusDesktop&) = delete;
  ~IbusDesktop() override;

  plain::FreeAccessibility& accessibility() override { return accessibility_; }
  inputmethod::FrameworkApplication& application() override { return application_; }
  posix::DataDirectoryBundle& bundle() override { return bundle_; }
  posix::MonotonicClock& clock() override { return clock_; }
  posix::ProcessEnvironment& environment() override { return environment_; }
  inputmethod::FieldEventTaps& eventTaps() override { return eventTaps_; }
  plain::PlainEvents<inputmethod::FieldEvent>& events() override { return events_; }
  posix::PosixFiles& files() override { return *files_; }
  inputmethod::FieldInputSources& inputSources() override { return inputSources_; }
  posix::NotificationCentre& inputSourceNotifications() override {
    return inputSourceNotifications_;
  }
  plain::OnlyKeyboard& keyboard() override { return keyboard_; }
  GlibRunLoop& runLoop() override { return runLoop_; }
  inputmethod::FieldSecureInput& secureInput() override { return secureInput_; }
  posix::ThreadQueues& serialQueues() override { return serialQueues_; }
  freedesktop::StatusNotifierBar& statusBar() override { return statusBar_; }
  posix::StandardErrorLog& systemLog() override { return systemLog_; }
  posix::SettingsFile& userDefaults() override { return userDefaults_; }
  freedesktop::FreedesktopWorkspace& workspace() override { return workspace_; }
  posix::NotificationCentre& workspaceNotifications() override { return workspaceNotifications_; }

  [[nodiscard]] inputmethod::KeyFlow& keyFlow() { return keyFlow_; }
  /// Null without a session bus.
  [[nodiscard]] freedesktop::Bus* sessionBus() { return sessionBus_.get(); }
  /// What does not work in this session, a sentence each.
  [[nodiscard]] std::vector<std::string> obstacles() const;
  /// Keys go through the corrector from now on, or by it.
  void setOpen(bool isOpen);

  bool keyEvent(IBusEngine& engine, guint symbol, guint code, guint states) override;
  void focusIn(IBusEngine& engine, const std::string& context, const std::string& program) override;
  void focusOut(IBusEngine& engine) override;
  void reset(IBusEngine& engine) override;
  void surroundingText(IBusEngine& engine, const std::string& text, guint caret,
                       guint anchor) override;
  void contentType(IBusEngine& engine, guint purpose, guint hints) override;
  void destroyed(IBusEngine& engine) override;

 private:
  struct ContentType {
    guint purpose = IBUS_INPUT_PURPOSE_FREE_FORM;
    guint hints = IBUS_INPUT_HINT_NONE;
  };

  [[nodiscard]] std::shared_ptr<IbusClient> clientFor(const std::string& context,
                                                      const std::string& program);
  /// The text field that this engine serves; null for none.
  [[nodiscard]] std::shared_ptr<IbusClient> clientOf(const IBusEngine& engine) const;
  void adopt(IBusEngine& engine);
  void leave();
  void engineEnabled(const std::string& engine);
  void sayThatNobodySwitches();
  void announceLater(platform::Notification notification);

  inputmethod::Guard& guard_;
  posix::MonotonicClock clock_;
  GlibRunLoop runLoop_;
  posix::StandardErrorLog systemLog_;
  std::unique_ptr<posix::PosixFiles> files_ = posix::PosixFiles::ofUser();
  plain::FreeAccessibility accessibility_;
  inputmethod::FrameworkApplication application_;
  posix::DataDirectoryBundle bundle_;
  posix::ProcessEnvironment environment_;
  posix::SettingsFile userDefaults_;
  posix::ThreadQueues serialQueues_;
  posix::NotificationCentre inputSourceNotifications_;
  posix::NotificationCentre workspaceNotifications_;
  /// Null without such a bus.
  std::unique_ptr<freedesktop::Bus> sessionBus_;
  std::unique_ptr<freedesktop::Bus> systemBus_;
  SourceList sourceList_;
  ShellExtension shellExtension_;
  EngineSwitch engineSwitch_;
  ShellOutlet shellOutlet_;
  IbusInputMethods inputMethods_;
  inputmethod::FieldInputSources inputSources_{inputMethods_};
  inputmethod::FieldEventTaps eventTaps_;
  plain::PlainEvents<inputmethod::FieldEvent> events_;
  /// It has the key beside the left Shift, which counts only where its characters are its own.
  plain::OnlyKeyboard keyboard_{clock_, platform::PhysicalLayoutType::iso};
  inputmethod::KeyFlow keyFlow_;
  inputmethod::FieldSecureInput secureInput_;
  freedesktop::SessionWatch sessionWatch_;
  freedesktop::Notice notice_;
  freedesktop::Programs programs_;
  freedesktop::StatusNotifierBar statusBar_;
  freedesktop::FreedesktopWorkspace workspace_;
  /// The text fields of programs that speak with IBus themselves, by their input contexts.
  std::map<std::string, std::shared_ptr<IbusClient>> clients_;
  /// The one that has the keys, and its input context; null when none has.
  std::shared_ptr<IbusClient> client_;
  std::string context_;
  std::map<const IBusEngine*, ContentType> contentTypes_;
  bool isOpen_ = false;
  bool saidThatNobodySwitches_ = false;
};

}  // namespace tessarok::ibus

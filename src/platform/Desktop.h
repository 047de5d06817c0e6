#pragma once

#include "platform/Accessibility.h"
#include "platform/Application.h"
#include "platform/Bundle.h"
#include "platform/Clock.h"
#include "platform/Environment.h"
#include "platform/EventTaps.h"
#include "platform/Events.h"
#include "platform/Files.h"
#include "platform/InputSources.h"
#include "platform/Keyboard.h"
#include "platform/Notifications.h"
#include "platform/RunLoop.h"
#include "platform/SecureInput.h"
#include "platform/SerialQueues.h"
#include "platform/StatusBar.h"
#include "platform/SystemLog.h"
#include "platform/TextContext.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"

namespace tessarok::platform {

/// Everything the corrector asks of the desktop it runs on. One object of the program's choosing
/// implements it; it outlives all use. A desktop decides nothing about words.
class Desktop {
 public:
  virtual ~Desktop() = default;
  virtual Accessibility& accessibility() = 0;
  virtual Application& application() = 0;
  virtual Bundle& bundle() = 0;
  virtual Clock& clock() = 0;
  virtual Environment& environment() = 0;
  virtual EventTaps& eventTaps() = 0;
  virtual Events& events() = 0;
  virtual Files& files() = 0;
  virtual InputSources& inputSources() = 0;
  /// Announces changes of the selected and the enabled input sources.
  virtual Notifications& inputSourceNotifications() = 0;
  virtual Keyboard& keyboard() = 0;
  virtual RunLoop& runLoop() = 0;
  virtual SecureInput& secureInput() = 0;
  virtual SerialQueues& serialQueues() = 0;
  virtual StatusBar& statusBar() = 0;
  virtual SystemLog& systemLog() = 0;
  /// Most desktops cannot tell, and have nothing but text.
  [[nodiscard]] virtual TextContext& textContext();
  virtual UserDefaults& userDefaults() = 0;
  virtual Workspace& workspace() = 0;
  /// Announces changes of the active application, of sleep and of the session.
  virtual Notifications& workspaceNotifications() = 0;
};

/// The desktop in use. Stops the program when none was set.
[[nodiscard]] Desktop& desktop();

/// Called once, in `main`, before anything else of the corrector runs.
void setDesktop(Desktop& desktop);

}  // namespace tessarok::platform

# The files of the macOS services: C++ over the system's C interfaces, and Objective-C++ over those
# that have no other.

set(TESSAROK_MACOS_SOURCES
  CfString.cpp
  MacAccessibility.cpp
  MacBundle.cpp
  MacDesktop.cpp
  MacEvent.cpp
  MacEventTap.cpp
  MacEventTaps.cpp
  MacEvents.cpp
  MacInputSource.cpp
  MacInputSourceNotifications.cpp
  MacInputSources.cpp
  MacKeyboard.cpp
  MacRunLoop.cpp
  MacSecureInput.cpp
  MacSerialQueues.cpp
  MacUserDefaults.cpp
)
list(TRANSFORM TESSAROK_MACOS_SOURCES PREPEND ${CMAKE_CURRENT_LIST_DIR}/)

set(TESSAROK_MACOS_OBJECTIVE_C_SOURCES
  ApplicationDelegate.mm
  MacApplication.mm
  MacClock.mm
  MacStatusBar.mm
  MacSystemLog.mm
  MacWorkspace.mm
  MacWorkspaceNotifications.mm
  Main.mm
  MenuBinding.mm
  ObjectiveCServices.mm
)
list(TRANSFORM TESSAROK_MACOS_OBJECTIVE_C_SOURCES PREPEND ${CMAKE_CURRENT_LIST_DIR}/)

# The files of the macOS services: C++ over the system's C interfaces, and Objective-C++ over those
# that have no other.

set(TESSAROK_MACOS_SOURCES
  CfString.cpp
  DistributedObserver.cpp
  MacAccessibility.cpp
  MacBundle.cpp
  MacClock.cpp
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
  PermissionNotification.cpp
  TerminationSignals.cpp
)
list(TRANSFORM TESSAROK_MACOS_SOURCES PREPEND ${CMAKE_CURRENT_LIST_DIR}/)

set(TESSAROK_MACOS_OBJECTIVE_C_SOURCES
  ApplicationDelegate.mm
  MacApplication.mm
  MacStatusBar.mm
  MacSystemLog.mm
  MacWorkspace.mm
  MacWorkspaceNotifications.mm
  MenuBinding.mm
  ObjectiveCServices.mm
  Program.mm
)
list(TRANSFORM TESSAROK_MACOS_OBJECTIVE_C_SOURCES PREPEND ${CMAKE_CURRENT_LIST_DIR}/)

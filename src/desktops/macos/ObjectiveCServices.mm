#include "desktops/macos/ObjectiveCServices.h"

#import <Foundation/Foundation.h>

#include "desktops/macos/MacApplication.h"
#include "desktops/macos/MacStatusBar.h"
#include "desktops/macos/MacSystemLog.h"
#include "desktops/macos/MacWorkspace.h"
#include "desktops/macos/MacWorkspaceNotifications.h"

namespace tessarok::macos {

namespace {

std::optional<std::filesystem::path> applicationSupportDirectory() {
  NSArray<NSURL*>* folders =
      [NSFileManager.defaultManager URLsForDirectory:NSApplicationSupportDirectory
                                           inDomains:NSUserDomainMask];
  NSURL* folder = folders.firstObject;
  if (folder == nil) return std::nullopt;
  return folder.fileSystemRepresentation;
}

}  // namespace

ObjectiveCServices makeObjectiveCServices() {
  return {.application = std::make_unique<MacApplication>(),
          .statusBar = std::make_unique<MacStatusBar>(),
          .systemLog = std::make_unique<MacSystemLog>(),
          .workspace = std::make_unique<MacWorkspace>(),
          .workspaceNotifications = std::make_unique<MacWorkspaceNotifications>(),
          .homeDirectory = NSHomeDirectory().fileSystemRepresentation,
          .applicationSupport = applicationSupportDirectory()};
}

}  // namespace tessarok::macos

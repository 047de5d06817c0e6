#include "platform/macos/ObjectiveCServices.h"

#import <Foundation/Foundation.h>

#include "platform/macos/MacApplication.h"
#include "platform/macos/MacClock.h"
#include "platform/macos/MacStatusBar.h"
#include "platform/macos/MacSystemLog.h"
#include "platform/macos/MacWorkspace.h"
#include "platform/macos/MacWorkspaceNotifications.h"

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
          .clock = std::make_unique<MacClock>(),
          .statusBar = std::make_unique<MacStatusBar>(),
          .systemLog = std::make_unique<MacSystemLog>(),
          .workspace = std::make_unique<MacWorkspace>(),
          .workspaceNotifications = std::make_unique<MacWorkspaceNotifications>(),
          .homeDirectory = NSHomeDirectory().fileSystemRepresentation,
          .applicationSupport = applicationSupportDirectory()};
}

}  // namespace tessarok::macos

#include "desktops/macos/MacWorkspace.h"

#import <AppKit/AppKit.h>

#include "desktops/macos/NsString.h"

namespace tessarok::macos {

void MacWorkspace::openFile(const std::filesystem::path& file) {
  NSString* path = nsString(file.native());
  if (path != nil) [NSWorkspace.sharedWorkspace openURL:[NSURL fileURLWithPath:path]];
}

void MacWorkspace::openUrl(std::string_view url) {
  NSString* text = nsString(url);
  NSURL* location = text == nil ? nil : [NSURL URLWithString:text];
  if (location != nil) [NSWorkspace.sharedWorkspace openURL:location];
}

}  // namespace tessarok::macos

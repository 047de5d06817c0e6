#include "desktops/macos/MacStatusBar.h"

#import <AppKit/AppKit.h>

#include "desktops/macos/MenuBinding.h"
#include "desktops/macos/NsString.h"

namespace tessarok::macos {

namespace {

constexpr CGFloat kSymbolPointSize = 15;

/// A symbol that follows the menu bar's colours; nil when the system has none of this name.
NSImage* barImage(std::string_view symbol) {
  NSImage* image = [NSImage imageWithSystemSymbolName:nsString(symbol)
                             accessibilityDescription:@"Tessarok"];
  NSImageSymbolConfiguration* configuration =
      [NSImageSymbolConfiguration configurationWithPointSize:kSymbolPointSize
                                                      weight:NSFontWeightRegular];
  NSImage* configured = [image imageWithSymbolConfiguration:configuration];
  [configured setTemplate:YES];
  return configured;
}

class Item final : public platform::StatusItem {
 public:
  Item() : item_([NSStatusBar.systemStatusBar statusItemWithLength:NSVariableStatusItemLength]) {}
  ~Item() override { [NSStatusBar.systemStatusBar removeStatusItem:item_]; }

  bool hasButton() const override { return item_.button != nil; }
  // The icon is redrawn by timers, which may run for hours without an event of AppKit's, after
  // which AppKit empties its pool.
  bool setSymbol(std::string_view name) override {
    @autoreleasepool {
      NSImage* image = barImage(name);
      if (image == nil) return false;
      item_.button.image = image;
      item_.button.title = @"";
      return true;
    }
  }
  void setTitle(std::string_view title) override {
    @autoreleasepool {
      item_.button.title = nsString(title);
    }
  }
  void setAppearsDisabled(bool disabled) override {
    @autoreleasepool {
      item_.button.appearsDisabled = disabled;
    }
  }
  void setToolTip(std::string_view toolTip) override {
    @autoreleasepool {
      item_.button.toolTip = nsString(toolTip);
    }
  }
  void setMenu(std::shared_ptr<platform::Menu> menu) override {
    @autoreleasepool {
      binding_ = [[TessarokMenuBinding alloc] initWithMenu:std::move(menu)];
      item_.menu = binding_.systemMenu;
    }
  }

 private:
  NSStatusItem* item_;
  /// A menu and its items hold their delegate and target weakly.
  TessarokMenuBinding* binding_ = nil;
};

}  // namespace

std::unique_ptr<platform::StatusItem> MacStatusBar::createItem() {
  return std::make_unique<Item>();
}

}  // namespace tessarok::macos

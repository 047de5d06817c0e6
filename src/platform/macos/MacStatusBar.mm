#include "platform/macos/MacStatusBar.h"

#import <AppKit/AppKit.h>

#include "platform/macos/MenuBinding.h"
#include "platform/macos/NsString.h"

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
  bool setSymbol(std::string_view name) override {
    NSImage* image = barImage(name);
    if (image == nil) return false;
    item_.button.image = image;
    item_.button.title = @"";
    return true;
  }
  void setTitle(std::string_view title) override { item_.button.title = nsString(title); }
  void setAppearsDisabled(bool disabled) override { item_.button.appearsDisabled = disabled; }
  void setToolTip(std::string_view toolTip) override { item_.button.toolTip = nsString(toolTip); }
  void setMenu(std::shared_ptr<platform::Menu> menu) override {
    binding_ = [[TessarokMenuBinding alloc] initWithMenu:std::move(menu)];
    item_.menu = binding_.systemMenu;
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

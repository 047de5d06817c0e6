#include "desktops/macos/MenuBinding.h"

#include "desktops/macos/NsString.h"

using tessarok::macos::nsString;
using tessarok::platform::Menu;
using tessarok::platform::MenuItem;

@implementation TessarokMenuBinding {
  std::shared_ptr<Menu> _menu;
  NSMutableArray<TessarokMenuBinding*>* _submenus;
}

- (instancetype)initWithMenu:(std::shared_ptr<Menu>)menu {
  self = [super init];
  if (self == nil) return nil;
  _menu = std::move(menu);
  _submenus = [[NSMutableArray alloc] init];
  _systemMenu = [[NSMenu alloc] init];
  // Else AppKit decides which items are enabled.
  _systemMenu.autoenablesItems = NO;
  _systemMenu.delegate = self;
  for (const auto& item : _menu->items) {
    [_systemMenu addItem:[self systemItemOf:*item]];
  }
  [self menuNeedsUpdate:_systemMenu];
  return self;
}

- (NSMenuItem*)systemItemOf:(const MenuItem&)item {
  if (item.isSeparator) return [NSMenuItem separatorItem];
  NSMenuItem* made = [[NSMenuItem alloc] initWithTitle:nsString(item.title)
                                                action:item.action ? @selector(choose:) : nullptr
                                         keyEquivalent:nsString(item.keyEquivalent)];
  made.target = self;
  if (!item.submenu) return made;
  TessarokMenuBinding* submenu = [[TessarokMenuBinding alloc] initWithMenu:item.submenu];
  [_submenus addObject:submenu];
  made.submenu = submenu.systemMenu;
  return made;
}

- (void)menuNeedsUpdate:(NSMenu*)menu {
  for (NSUInteger i = 0; i < _menu->items.size(); ++i) {
    const auto& item = *_menu->items[i];
    if (item.isSeparator) continue;
    NSMenuItem* shown = [menu itemAtIndex:static_cast<NSInteger>(i)];
    shown.title = nsString(item.title);
    shown.enabled = item.enabled;
    shown.state = item.state ? NSControlStateValueOn : NSControlStateValueOff;
    shown.tag = item.tag;
  }
}

- (void)choose:(NSMenuItem*)sender {
  const auto index = [_systemMenu indexOfItem:sender];
  if (index < 0) return;
  // The menu may go while its item acts.
  const auto item = _menu->items[static_cast<NSUInteger>(index)];
  if (item->action) item->action(*item);
}

@end

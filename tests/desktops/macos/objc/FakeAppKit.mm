// AppKit and Foundation for the tests, under automatic reference counting as the program is.

#include "tests/desktops/macos/objc/FakeAppKit.h"

#import <AppKit/AppKit.h>
#include <algorithm>

#include "tests/desktops/macos/fake/FakeSystem.h"
#include "tests/desktops/macos/objc/Runtime.h"

using tessarok::fakemac::fakeAppKit;
using tessarok::fakemac::fakeSystem;
using tessarok::fakemac::misuse;

namespace {

/// A string of the program's text, as the compiler writes it.
struct ConstantString {
  const void* type;
  long flags;
  const char* bytes;
  long length;
};

NSString* make(const std::string& text) {
  return [[NSString alloc] initWithBytes:text.data()
                                  length:text.size()
                                encoding:NSUTF8StringEncoding];
}

}  // namespace

// Foundation.

// What is returned fits into registers: the runtime passes no other messages on.

@interface NSString ()
- (void)assignTo:(std::string&)target;
@end

@implementation NSString {
  std::string _text;
}
- (instancetype)initWithBytes:(const void*)bytes
                       length:(NSUInteger)length
                     encoding:(NSStringEncoding)encoding {
  self = [super init];
  if (encoding != NSUTF8StringEncoding) misuse("only UTF-8 was expected");
  _text.assign(static_cast<const char*>(bytes), length);
  // The system has no string of what is not UTF-8.
  if (_text.find('\xFF') != std::string::npos) return nil;
  return self;
}
- (const char*)fileSystemRepresentation {
  return _text.c_str();
}
- (void)assignTo:(std::string&)target {
  target = _text;
}
@end

@implementation NSConstantString
- (void)assignTo:(std::string&)target {
  const auto* constant = (__bridge const ConstantString*)self;
  target.assign(constant->bytes, static_cast<std::size_t>(constant->length));
}
@end

namespace {

std::string text(NSString* string) {
  // A message to nil would answer with nothing, where the system stops the program.
  if (string == nil) misuse("no string");
  std::string content;
  [string assignTo:content];
  return content;
}

}  // namespace

@implementation NSArray {
 @protected
  std::vector<id> _objects;
}
- (NSUInteger)count {
  return _objects.size();
}
- (id)firstObject {
  return _objects.empty() ? nil : _objects.front();
}
- (id)objectAtIndexedSubscript:(NSUInteger)index {
  if (index >= _objects.size()) misuse("an array has no such element");
  return _objects[index];
}
@end

@implementation NSMutableArray
- (void)addObject:(id)object {
  if (object == nil) misuse("nil was added to an array");
  _objects.push_back(object);
}
@end

@interface NSDate ()
- (instancetype)initWithTime:(NSTimeInterval)time;
@end

@implementation NSDate {
  NSTimeInterval _time;
}
- (instancetype)initWithTime:(NSTimeInterval)time {
  self = [super init];
  _time = time;
  return self;
}
- (NSTimeInterval)timeIntervalSinceReferenceDate {
  return _time;
}
@end

@interface NSURL ()
- (instancetype)initWithText:(std::string)text;
@end

@implementation NSURL {
  std::string _text;
}
+ (instancetype)URLWithString:(NSString*)string {
  const auto content = text(string);
  if (content.empty() || content.find(' ') != std::string::npos) return nil;
  return [[NSURL alloc] initWithText:content];
}
+ (NSURL*)fileURLWithPath:(NSString*)path {
  return [[NSURL alloc] initWithText:text(path)];
}
- (instancetype)initWithText:(std::string)text {
  self = [super init];
  _text = std::move(text);
  return self;
}
- (const char*)fileSystemRepresentation {
  return _text.c_str();
}
@end

@implementation NSFileManager
+ (NSFileManager*)defaultManager {
  static NSFileManager* const manager = [[NSFileManager alloc] init];
  return manager;
}
- (NSArray<NSURL*>*)URLsForDirectory:(NSSearchPathDirectory)directory
                           inDomains:(NSSearchPathDomainMask)domains {
  if (directory != NSApplicationSupportDirectory || domains != NSUserDomainMask) {
    misuse("an unexpected folder was asked for");
  }
  NSMutableArray<NSURL*>* urls = [[NSMutableArray alloc] init];
  const auto& folder = fakeAppKit().applicationSupport;
  if (!folder.empty()) [urls addObject:[[NSURL alloc] initWithText:folder]];
  return urls;
}
@end

/// While it lives the system lets the program work.
@interface FakeActivity : NSObject
- (instancetype)initWithReason:(std::string)reason options:(NSActivityOptions)options;
@end

@implementation FakeActivity {
  std::pair<std::string, std::uint64_t> _activity;
}
- (instancetype)initWithReason:(std::string)reason options:(NSActivityOptions)options {
  self = [super init];
  _activity = {std::move(reason), options};
  fakeAppKit().activities.push_back(_activity);
  return self;
}
- (void)dealloc {
  auto& all = fakeAppKit().activities;
  all.erase(std::find(all.begin(), all.end(), _activity));
}
@end

@implementation NSProcessInfo
+ (NSProcessInfo*)processInfo {
  static NSProcessInfo* const information = [[NSProcessInfo alloc] init];
  return information;
}
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason {
  return [[FakeActivity alloc] initWithReason:text(reason) options:options];
}
@end

@implementation NSNotification
@end

@implementation NSOperationQueue
@end

@interface FakeObserver : NSObject
@property(copy) NSNotificationName name;
@property void* block;
@end

@implementation FakeObserver
- (void)dealloc {
  fakeobjc_releaseBlock(_block);
}
@end

@interface NSNotificationCenter ()
- (void)announce:(const std::string&)name;
- (std::size_t)observers;
@end

@implementation NSNotificationCenter {
  std::vector<FakeObserver*> _observers;
}
- (id)addObserverForName:(NSNotificationName)name
                  object:(id)object
                   queue:(NSOperationQueue*)queue
              usingBlock:(void (^)(NSNotification*))block {
  if (name == nil || object != nil || queue != nil) misuse("unexpected observer");
  FakeObserver* observer = [[FakeObserver alloc] init];
  observer.name = name;
  observer.block = fakeobjc_copyBlock((__bridge const void*)block);
  _observers.push_back(observer);
  return observer;
}
- (void)removeObserver:(id)observer {
  const auto found = std::find(_observers.begin(), _observers.end(), observer);
  if (found == _observers.end()) misuse("there is no such observer");
  _observers.erase(found);
}
- (void)announce:(const std::string&)name {
  const auto all = _observers;
  NSNotification* notification = [[NSNotification alloc] init];
  for (FakeObserver* observer : all) {
    if (text(observer.name) == name) {
      fakeobjc_callBlock(observer.block, (__bridge void*)notification);
    }
  }
}
- (std::size_t)observers {
  return _observers.size();
}
@end

NSString* NSHomeDirectory() {
  return make(fakeAppKit().homeDirectory);
}

void NSLog(NSString* format, ...) {
  if (text(format) != "%@") misuse("an unexpected format");
  va_list arguments;
  va_start(arguments, format);
  NSString* message = (__bridge NSString*)va_arg(arguments, void*);
  va_end(arguments);
  fakeAppKit().logged.push_back(text(message));
}

// AppKit.

const CGFloat NSFontWeightRegular = 0;
const NSNotificationName NSWorkspaceDidActivateApplicationNotification =
    @"NSWorkspaceDidActivateApplicationNotification";
const NSNotificationName NSWorkspaceWillSleepNotification = @"NSWorkspaceWillSleepNotification";
const NSNotificationName NSWorkspaceDidWakeNotification = @"NSWorkspaceDidWakeNotification";
const NSNotificationName NSWorkspaceScreensDidSleepNotification =
    @"NSWorkspaceScreensDidSleepNotification";
const NSNotificationName NSWorkspaceSessionDidResignActiveNotification =
    @"NSWorkspaceSessionDidResignActiveNotification";
const NSNotificationName NSWorkspaceSessionDidBecomeActiveNotification =
    @"NSWorkspaceSessionDidBecomeActiveNotification";

@interface NSImageSymbolConfiguration ()
@property CGFloat pointSize;
@end

@implementation NSImageSymbolConfiguration
+ (instancetype)configurationWithPointSize:(CGFloat)pointSize weight:(CGFloat)weight {
  if (weight != NSFontWeightRegular) misuse("an unexpected weight");
  NSImageSymbolConfiguration* made = [[NSImageSymbolConfiguration alloc] init];
  made.pointSize = pointSize;
  return made;
}
@end

@interface NSImage ()
@property(copy) NSString* symbol;
@property CGFloat pointSize;
@property BOOL isTemplate;
@end

@implementation NSImage
+ (instancetype)imageWithSystemSymbolName:(NSString*)name
                 accessibilityDescription:(NSString*)description {
  if (text(description) != "Tessarok") misuse("an unexpected description");
  if (fakeAppKit().missingSymbols.contains(text(name))) return nil;
  NSImage* image = [[NSImage alloc] init];
  image.symbol = name;
  return image;
}
- (NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration {
  NSImage* image = [[NSImage alloc] init];
  image.symbol = self.symbol;
  image.pointSize = configuration.pointSize;
  return image;
}
- (void)setTemplate:(BOOL)isTemplate {
  self.isTemplate = isTemplate;
}
@end

@interface NSMenuItem ()
@property BOOL isSeparator;
@property(copy) NSString* keyEquivalent;
- (BOOL)perform;
@end

@implementation NSMenuItem {
  SEL _action;
}
+ (NSMenuItem*)separatorItem {
  NSMenuItem* item = [[NSMenuItem alloc] init];
  item.isSeparator = YES;
  return item;
}
- (instancetype)initWithTitle:(NSString*)title
                       action:(SEL)action
                keyEquivalent:(NSString*)keyEquivalent {
  self = [super init];
  static_cast<void>(text(title));
  static_cast<void>(text(keyEquivalent));
  self.title = title;
  self.keyEquivalent = keyEquivalent;
  self.enabled = YES;
  _action = action;
  return self;
}
- (BOOL)perform {
  // Without its target an item does nothing.
  id target = self.target;
  if (_action == nullptr || target == nil || ![target respondsToSelector:_action]) return NO;
  using Action = void (*)(id, SEL, id);
  extern void send(void) __asm__("objc_msgSend");
  reinterpret_cast<Action> (&send)(target, _action, self);
  return YES;
}
@end

@interface NSMenu ()
- (const std::vector<NSMenuItem*>&)items;
- (void)open;
@end

@implementation NSMenu {
  std::vector<NSMenuItem*> _items;
}
- (instancetype)init {
  self = [super init];
  self.autoenablesItems = YES;
  return self;
}
- (void)addItem:(NSMenuItem*)item {
  if (item == nil) misuse("nil was added to a menu");
  _items.push_back(item);
}
- (NSMenuItem*)itemAtIndex:(NSInteger)index {
  if (index < 0 || static_cast<std::size_t>(index) >= _items.size()) misuse("no such menu item");
  return _items[static_cast<std::size_t>(index)];
}
- (NSInteger)indexOfItem:(NSMenuItem*)item {
  const auto found = std::find(_items.begin(), _items.end(), item);
  return found == _items.end() ? -1 : found - _items.begin();
}
- (const std::vector<NSMenuItem*>&)items {
  return _items;
}
- (void)open {
  id<NSMenuDelegate> delegate = self.delegate;
  if ([delegate respondsToSelector:@selector(menuNeedsUpdate:)]) [delegate menuNeedsUpdate:self];
}
@end

@implementation NSStatusBarButton
@end

@interface NSStatusItem ()
@property CGFloat length;
@end

@implementation NSStatusItem {
  NSStatusBarButton* _button;
}
- (instancetype)init {
  self = [super init];
  _button = [[NSStatusBarButton alloc] init];
  return self;
}
- (NSStatusBarButton*)button {
  return fakeAppKit().hasStatusButton ? _button : nil;
}
@end

@interface NSStatusBar ()
- (const std::vector<NSStatusItem*>&)items;
@end

@implementation NSStatusBar {
  std::vector<NSStatusItem*> _items;
}
+ (NSStatusBar*)systemStatusBar {
  static NSStatusBar* const bar = [[NSStatusBar alloc] init];
  return bar;
}
- (NSStatusItem*)statusItemWithLength:(CGFloat)length {
  NSStatusItem* item = [[NSStatusItem alloc] init];
  item.length = length;
  // The bar does not hold its items: whoever made one does.
  _items.push_back(item);
  return item;
}
- (void)removeStatusItem:(NSStatusItem*)item {
  const auto found = std::find(_items.begin(), _items.end(), item);
  if (found == _items.end()) misuse("there is no such status item");
  _items.erase(found);
}
- (const std::vector<NSStatusItem*>&)items {
  return _items;
}
@end

@interface NSRunningApplication ()
- (instancetype)initWithValues:(const tessarok::fakemac::FakeAppKit::Running&)values;
@end

@implementation NSRunningApplication {
  tessarok::fakemac::FakeAppKit::Running _values;
}
+ (NSRunningApplication*)currentApplication {
  return [[NSRunningApplication alloc] initWithValues:fakeAppKit().self];
}
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:(NSString*)identifier {
  NSMutableArray<NSRunningApplication*>* all = [[NSMutableArray alloc] init];
  if (text(identifier) != fakeSystem().bundleIdentifier) return all;
  [all addObject:NSRunningApplication.currentApplication];
  for (const auto& other : fakeAppKit().others)
    [all addObject:[[NSRunningApplication alloc] initWithValues:other]];
  return all;
}
- (instancetype)initWithValues:(const tessarok::fakemac::FakeAppKit::Running&)values {
  self = [super init];
  _values = values;
  return self;
}
- (int)processIdentifier {
  return _values.processIdentifier;
}
- (NSDate*)launchDate {
  return _values.hasLaunchDate ? [[NSDate alloc] initWithTime:_values.launchDate] : nil;
}
@end

@implementation NSWorkspace {
  NSNotificationCenter* _centre;
}
+ (NSWorkspace*)sharedWorkspace {
  static NSWorkspace* const workspace = [[NSWorkspace alloc] init];
  return workspace;
}
- (instancetype)init {
  self = [super init];
  _centre = [[NSNotificationCenter alloc] init];
  return self;
}
- (NSNotificationCenter*)notificationCenter {
  return _centre;
}
- (BOOL)openURL:(NSURL*)url {
  if (url == nil) misuse("nothing to open");
  fakeAppKit().openedUrls.emplace_back(url.fileSystemRepresentation);
  return YES;
}
@end

@implementation NSApplication
+ (NSApplication*)sharedApplication {
  static NSApplication* const application = [[NSApplication alloc] init];
  return application;
}
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy {
  fakeAppKit().activationPolicy = static_cast<int>(policy);
  return YES;
}
- (void)run {
  @autoreleasepool {
    [self.delegate applicationDidFinishLaunching:[[NSNotification alloc] init]];
  }
  // Each turn of the loop has a pool of its own.
  @autoreleasepool {
    fakeSystem().runMainQueue();
    if (!fakeAppKit().isTerminated && fakeAppKit().onRun) fakeAppKit().onRun();
  }
  @autoreleasepool {
    [self terminate:nil];
  }
}
- (void)terminate:(id)sender {
  if (std::exchange(fakeAppKit().isTerminated, true)) return;
  [self.delegate applicationWillTerminate:[[NSNotification alloc] init]];
}
@end

namespace tessarok::fakemac {

namespace {

ShownMenuItem describe(NSMenuItem* item);

std::vector<ShownMenuItem> describe(NSMenu* menu) {
  [menu open];
  std::vector<ShownMenuItem> shown;
  for (NSMenuItem* item : [menu items])
    shown.push_back(describe(item));
  return shown;
}

ShownMenuItem describe(NSMenuItem* item) {
  ShownMenuItem shown;
  shown.isSeparator = item.isSeparator;
  if (shown.isSeparator) return shown;
  shown.title = text(item.title);
  shown.isEnabled = item.enabled;
  shown.isOn = item.state == NSControlStateValueOn;
  shown.tag = item.tag;
  shown.keyEquivalent = text(item.keyEquivalent);
  if (item.submenu != nil) shown.submenu = describe(item.submenu);
  return shown;
}

NSMenuItem* itemTitled(NSMenu* menu, const std::string& title) {
  [menu open];
  if (menu.autoenablesItems) misuse("AppKit decides which items are enabled");
  for (NSMenuItem* item : [menu items]) {
    if (item.isSeparator) continue;
    if (text(item.title) == title) return item;
    if (NSMenuItem* below = item.submenu == nil ? nil : itemTitled(item.submenu, title)) {
      return below;
    }
  }
  return nil;
}

NSStatusItem* theItem() {
  const auto& items = [NSStatusBar.systemStatusBar items];
  if (items.size() != 1) misuse("one status item was expected");
  return items.front();
}

}  // namespace

FakeAppKit& fakeAppKit() {
  static auto* const state = new FakeAppKit;
  return *state;
}

std::size_t FakeAppKit::observers() const {
  @autoreleasepool {
    return [NSWorkspace.sharedWorkspace.notificationCenter observers];
  }
}

void FakeAppKit::announce(const std::string& notification) {
  @autoreleasepool {
    [NSWorkspace.sharedWorkspace.notificationCenter announce:notification];
  }
}

std::size_t FakeAppKit::statusItems() const {
  @autoreleasepool {
    return [NSStatusBar.systemStatusBar items].size();
  }
}

ShownStatusItem FakeAppKit::statusItem() const {
  @autoreleasepool {
    NSStatusItem* item = theItem();
    NSStatusBarButton* button = item.button;
    ShownStatusItem shown;
    if (button.image != nil) {
      shown.symbol = text(button.image.symbol);
      shown.pointSize = button.image.pointSize;
      shown.isTemplate = button.image.isTemplate;
    }
    if (button.title != nil) shown.title = text(button.title);
    if (button.toolTip != nil) shown.toolTip = text(button.toolTip);
    shown.isDimmed = button.appearsDisabled;
    shown.length = item.length;
    return shown;
  }
}

std::vector<ShownMenuItem> FakeAppKit::openMenu() const {
  @autoreleasepool {
    return describe(theItem().menu);
  }
}

bool FakeAppKit::choose(const std::string& title) const {
  @autoreleasepool {
    NSMenuItem* item = itemTitled(theItem().menu, title);
    return item != nil && item.enabled && [item perform];
  }
}

}  // namespace tessarok::fakemac

// Secure Input, text input sources and keyboards.

#include <algorithm>
#include <cstring>

#include "desktops/layouts/KeyTable.h"
#include "tests/desktops/macos/fake/FakeSystem.h"

namespace tessarok::fakemac {

namespace {

constexpr std::size_t kLayoutSize = 64;
/// The bytes of a layout start with this, and then 1 for a Russian one.
constexpr char kLayoutMark[] = "layout";

CFTypeRef immortal(CFTypeRef object) {
  return CFRetain(object);
}

}  // namespace

std::vector<UInt8> layoutBytes(bool russian) {
  std::vector<UInt8> bytes(kLayoutSize);
  std::copy(std::begin(kLayoutMark), std::end(kLayoutMark), bytes.begin());
  bytes[sizeof kLayoutMark] = russian;
  return bytes;
}

InputSource::~InputSource() {
  for (const auto& property : properties)
    CFRelease(property.second);
}

void InputSource::set(CFStringRef key, CFTypeRef value) {
  remove(key);
  properties.emplace_back(key, value);
}

void InputSource::remove(CFStringRef key) {
  const auto found = std::find_if(properties.begin(), properties.end(),
                                  [&](const auto& entry) { return entry.first == key; });
  if (found == properties.end()) return;
  CFRelease(found->second);
  properties.erase(found);
}

CFTypeRef InputSource::get(CFStringRef key) const {
  const auto found = std::find_if(properties.begin(), properties.end(),
                                  [&](const auto& entry) { return entry.first == key; });
  return found == properties.end() ? nullptr : found->second;
}

InputSource& FakeSystem::install(const std::string& identifier, bool hasLayoutData) {
  auto* source = new InputSource;
  source->set(kTISPropertyInputSourceCategory, immortal(kTISCategoryKeyboardInputSource));
  source->set(kTISPropertyInputSourceType, immortal(kTISTypeKeyboardLayout));
  source->set(kTISPropertyInputSourceIsSelectCapable, immortal(kCFBooleanTrue));
  source->set(kTISPropertyInputSourceID, new String(identifier));
  if (hasLayoutData) {
    const auto* table = layouts::KeyTable::ofLayout(identifier);
    source->set(kTISPropertyUnicodeKeyLayoutData,
                new Data(layoutBytes(table == &layouts::KeyTable::russian())));
  }
  installed.push_back(source);
  return *source;
}

void FakeSystem::uninstallAll() {
  for (auto* source : installed)
    CFRelease(source);
  installed.clear();
}

void FakeSystem::makeCurrent(InputSource* source) {
  if (source != nullptr) CFRetain(source);
  if (current != nullptr) CFRelease(current);
  current = source;
}

}  // namespace tessarok::fakemac

using namespace tessarok::fakemac;

::Boolean IsSecureEventInputEnabled() {
  return fakeSystem().secureInput;
}

CFTypeID TISInputSourceGetTypeID() {
  return static_cast<CFTypeID>(Kind::inputSource);
}

CFArrayRef TISCreateInputSourceList(CFDictionaryRef properties, ::Boolean includeAllInstalled) {
  auto& system = fakeSystem();
  if (includeAllInstalled) misuse("sources that are not enabled were asked for");
  const auto& filter = as<Dictionary>(properties).entries;
  if (filter.size() != 3) misuse("a filter of three properties was expected");
  if (system.listIsAbsent) return nullptr;
  auto elements = system.strayElements;
  for (auto* source : system.installed) {
    const bool fits = std::all_of(filter.begin(), filter.end(), [&](const auto& entry) {
      return source->get(static_cast<CFStringRef>(entry.first)) == entry.second;
    });
    if (fits) elements.push_back(source);
  }
  return refTo<CFArrayRef>(new Array(std::move(elements)));
}

TISInputSourceRef TISCopyCurrentKeyboardInputSource() {
  auto* current = fakeSystem().current;
  if (current != nullptr) CFRetain(current);
  return refTo<TISInputSourceRef>(current);
}

void* TISGetInputSourceProperty(TISInputSourceRef source, CFStringRef key) {
  if (key == nullptr) misuse("a property without a name");
  return const_cast<void*>(as<InputSource>(source).get(key));
}

OSStatus TISSelectInputSource(TISInputSourceRef source) {
  auto& system = fakeSystem();
  auto& selected = as<InputSource>(source);
  constexpr OSStatus kRefused = -50;
  if (std::exchange(system.failsNextSelection, false)) return kRefused;
  const auto& all = system.installed;
  if (std::find(all.begin(), all.end(), &selected) == all.end()) return kRefused;
  system.makeCurrent(&selected);
  if (system.onSelected) system.onSelected();
  return 0;
}

OSStatus UCKeyTranslate(const UCKeyboardLayout* layout, UInt16 virtualKeyCode, UInt16 keyAction,
                        UInt32 modifierKeyState, UInt32 keyboardType, OptionBits options,
                        UInt32* deadKeyState, UniCharCount room, UniCharCount* length,
                        UniChar* units) {
  auto& system = fakeSystem();
  const auto* bytes = reinterpret_cast<const UInt8*>(layout);
  if (std::memcmp(bytes, kLayoutMark, sizeof kLayoutMark) != 0) misuse("bytes of no layout");
  if (keyAction != kUCKeyActionDisplay || options != kUCKeyTranslateNoDeadKeysMask ||
      *deadKeyState != 0 || room != 8 || (modifierKeyState != 0 && modifierKeyState != 2)) {
    misuse("UCKeyTranslate was called with unexpected arguments");
  }
  system.translatedFor.push_back(keyboardType);
  const bool shift = modifierKeyState == 2;
  const auto error = system.keyErrors.find(virtualKeyCode);
  if (error != system.keyErrors.end()) return error->second;
  const auto& table = bytes[sizeof kLayoutMark] != 0 ? tessarok::layouts::KeyTable::russian()
                                                     : tessarok::layouts::KeyTable::english();
  std::u16string text;
  if (const auto own = system.keyTexts.find({virtualKeyCode, shift});
      own != system.keyTexts.end()) {
    text = own->second;
  } else if (const auto character = table.character(virtualKeyCode, shift)) {
    text.assign(1, *character);
  }
  *length = std::min<std::size_t>(text.size(), room);
  std::copy_n(text.begin(), *length, units);
  return 0;
}

PhysicalKeyboardLayoutType KBGetLayoutType(SInt16 keyboardType) {
  if (keyboardType != fakeSystem().keyboardType) misuse("the layout of another keyboard");
  return fakeSystem().physicalLayout;
}

UInt8 LMGetKbdType() {
  return fakeSystem().keyboardType;
}

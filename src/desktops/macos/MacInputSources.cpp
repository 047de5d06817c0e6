#include "desktops/macos/MacInputSources.h"

#include <Carbon/Carbon.h>
#include <cstdlib>

#include "desktops/macos/CfString.h"
#include "desktops/macos/MacInputSource.h"
#include "desktops/macos/Own.h"

namespace tessarok::macos {

namespace {

/// The properties of selectable keyboard layouts, in contrast to input methods and palettes.
CfRef<CFDictionaryRef> makeFilter() {
  const void* keys[] = {kTISPropertyInputSourceCategory, kTISPropertyInputSourceType,
                        kTISPropertyInputSourceIsSelectCapable};
  const void* values[] = {kTISCategoryKeyboardInputSource, kTISTypeKeyboardLayout, kCFBooleanTrue};
  // Without one of them every source of the system would pass for a layout.
  for (const auto* key : keys) {
    if (key == nullptr) std::abort();
  }
  for (const auto* value : values) {
    if (value == nullptr) std::abort();
  }
  return CfRef<CFDictionaryRef>::adopt(
      CFDictionaryCreate(kCFAllocatorDefault, keys, values, std::size(keys),
                         &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
}

}  // namespace

std::vector<std::shared_ptr<platform::InputSourceHandle>> MacInputSources::enabledLayouts() {
  const auto filter = makeFilter();
  std::vector<std::shared_ptr<platform::InputSourceHandle>> layouts;
  const auto list = CfRef<CFArrayRef>::adopt(TISCreateInputSourceList(filter.get(), false));
  if (!list) return layouts;
  const auto count = CFArrayGetCount(list.get());
  for (CFIndex i = 0; i < count; ++i) {
    const void* element = CFArrayGetValueAtIndex(list.get(), i);
    if (element == nullptr || CFGetTypeID(element) != TISInputSourceGetTypeID()) continue;
    const auto source = static_cast<TISInputSourceRef>(const_cast<void*>(element));
    layouts.push_back(std::make_shared<MacInputSource>(CfRef<TISInputSourceRef>::retain(source)));
  }
  return layouts;
}

const std::optional<std::string>& MacInputSources::current() {
  static const std::optional<std::string> kNone;
  const auto source = CfRef<TISInputSourceRef>::adopt(TISCopyCurrentKeyboardInputSource());
  const void* identifier =
      source ? TISGetInputSourceProperty(source.get(), kTISPropertyInputSourceID) : nullptr;
  cfString::assign(identifier, read_);
  if (!read_) return kNone;
  const auto known = known_.find(read_);
  return known != known_.end() ? *known : *known_.insert(read_).first;
}

bool MacInputSources::select(platform::InputSourceHandle& source) {
  return TISSelectInputSource(own<MacInputSource>(source).get()) == 0;
}

}  // namespace tessarok::macos

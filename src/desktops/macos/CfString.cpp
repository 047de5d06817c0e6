#include "desktops/macos/CfString.h"

#include <cstring>

namespace tessarok::macos::cfString {

CfRef<CFStringRef> make(std::string_view text) {
  return CfRef<CFStringRef>::adopt(
      CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(text.data()),
                              static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false));
}

std::optional<std::string> text(CFTypeRef object) {
  std::optional<std::string> copy;
  assign(object, copy);
  return copy;
}

void assign(CFTypeRef object, std::optional<std::string>& text) {
  if (object == nullptr || CFGetTypeID(object) != CFStringGetTypeID()) return text.reset();
  const auto string = static_cast<CFStringRef>(object);
  // One more for the zero at the end.
  const auto size =
      CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8) + 1;
  if (!text) text.emplace();
  text->resize(static_cast<std::size_t>(size));
  if (!CFStringGetCString(string, text->data(), size, kCFStringEncodingUTF8)) return text.reset();
  text->resize(std::strlen(text->c_str()));
}

}  // namespace tessarok::macos::cfString

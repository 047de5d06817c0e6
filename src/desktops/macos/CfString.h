#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <optional>
#include <string>
#include <string_view>

#include "desktops/macos/CfRef.h"

/// Text between the program, which holds UTF-8, and the system.
namespace tessarok::macos::cfString {

/// Null for text that is not UTF-8.
[[nodiscard]] CfRef<CFStringRef> make(std::string_view text);
/// Absent for null and for an object that is no string: properties are what others have put there.
[[nodiscard]] std::optional<std::string> text(CFTypeRef object);
/// As `text`, but keeps the storage of what `text` held before.
void assign(CFTypeRef object, std::optional<std::string>& text);

}  // namespace tessarok::macos::cfString

#include "desktops/macos/MacUserDefaults.h"

#include <CoreFoundation/CoreFoundation.h>
#include <string>

#include "desktops/macos/CfString.h"

namespace tessarok::macos {

namespace {

/// As the system reads a text for a switch: yes and true by their first letter, and numbers.
bool isAffirmative(std::string_view text) {
  const auto start = text.find_first_not_of(" \t\n");
  if (start == std::string_view::npos) return false;
  text.remove_prefix(start);
  if (text.front() == '+' || text.front() == '-') text.remove_prefix(1);
  const auto digit = text.find_first_not_of('0');
  if (digit == std::string_view::npos) return false;
  return std::string_view(digit == 0 ? "YyTt123456789" : "123456789").find(text[digit]) !=
         std::string_view::npos;
}

/// Whatever is saved under a switch's key means something: a person may have written it by hand.
bool booleanOf(CFTypeRef value) {
  const auto type = CFGetTypeID(value);
  if (type == CFBooleanGetTypeID()) return CFBooleanGetValue(static_cast<CFBooleanRef>(value));
  if (type == CFNumberGetTypeID()) {
    double number = 0;
    CFNumberGetValue(static_cast<CFNumberRef>(value), kCFNumberDoubleType, &number);
    return number != 0;
  }
  const auto text = cfString::text(value);
  return text && isAffirmative(*text);
}

}  // namespace

MacUserDefaults::MacUserDefaults(std::string_view application)
    : application_(cfString::make(application)) {}

std::optional<bool> MacUserDefaults::boolean(std::string_view key) {
  const auto name = cfString::make(key);
  const auto value =
      CfRef<CFPropertyListRef>::adopt(CFPreferencesCopyAppValue(name.get(), application_.get()));
  if (!value) return std::nullopt;
  return booleanOf(value.get());
}

void MacUserDefaults::setBoolean(std::string_view key, bool value) {
  const auto name = cfString::make(key);
  CFPreferencesSetAppValue(name.get(), value ? kCFBooleanTrue : kCFBooleanFalse,
                           application_.get());
  // Else a logout may come before the value is saved.
  CFPreferencesAppSynchronize(application_.get());
}

}  // namespace tessarok::macos

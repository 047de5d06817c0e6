#include "desktops/macos/MacBundle.h"

#include <CoreFoundation/CoreFoundation.h>
#include <algorithm>
#include <array>
#include <climits>

#include "desktops/macos/CfString.h"

namespace tessarok::macos {

namespace {

std::optional<std::filesystem::path> pathOf(CFURLRef url) {
  std::array<UInt8, PATH_MAX> path{};
  if (!CFURLGetFileSystemRepresentation(url, true, path.data(),
                                        static_cast<CFIndex>(path.size()))) {
    return std::nullopt;
  }
  return reinterpret_cast<const char*>(path.data());
}

std::string asciiLowercased(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return text;
}

}  // namespace

std::optional<std::string> MacBundle::identifier() {
  const auto bundle = CFBundleGetMainBundle();
  return bundle == nullptr ? std::nullopt : cfString::text(CFBundleGetIdentifier(bundle));
}

std::optional<std::filesystem::path> MacBundle::resource(std::string_view name,
                                                         std::string_view extension) {
  const auto bundle = CFBundleGetMainBundle();
  if (bundle == nullptr) return std::nullopt;
  const auto resourceName = cfString::make(name);
  const auto type = cfString::make(extension);
  const auto url = CfRef<CFURLRef>::adopt(
      CFBundleCopyResourceURL(bundle, resourceName.get(), type.get(), nullptr));
  return url ? pathOf(url.get()) : std::nullopt;
}

bool MacBundle::isApplication() {
  const auto bundle = CFBundleGetMainBundle();
  if (bundle == nullptr) return false;
  const auto url = CfRef<CFURLRef>::adopt(CFBundleCopyBundleURL(bundle));
  if (!url) return false;
  const auto extension = CfRef<CFStringRef>::adopt(CFURLCopyPathExtension(url.get()));
  return asciiLowercased(cfString::text(extension.get()).value_or("")) == "app";
}

}  // namespace tessarok::macos

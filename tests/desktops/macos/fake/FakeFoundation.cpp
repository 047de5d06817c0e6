// Preferences, the bundle, and Core Foundation's constants.

#include <filesystem>

#include "tests/desktops/macos/fake/FakeSystem.h"

using namespace tessarok::fakemac;

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFBooleanRef kCFBooleanTrue = refTo<CFBooleanRef>(new tessarok::fakemac::Boolean(true));
const CFBooleanRef kCFBooleanFalse = refTo<CFBooleanRef>(new tessarok::fakemac::Boolean(false));
const CFStringRef kCFPreferencesCurrentApplication =
    refTo<CFStringRef>(new String("kCFPreferencesCurrentApplication", true));

namespace {

void requireOwn(CFStringRef application) {
  if (application == kCFPreferencesCurrentApplication) return;
  const auto& own = fakeSystem().bundleIdentifier;
  if (!own || as<String>(application).text != *own) misuse("another program's preferences");
}

void requireMain(CFBundleRef bundle) {
  if (bundle == nullptr || bundle != CFBundleGetMainBundle()) misuse("no bundle");
}

}  // namespace

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef application) {
  requireOwn(application);
  const auto& all = fakeSystem().preferences;
  const auto found = all.find(as<String>(key).text);
  return found == all.end() ? nullptr : CFRetain(found->second);
}

void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef application) {
  requireOwn(application);
  fakeSystem().setPreference(as<String>(key).text, CFRetain(value));
}

::Boolean CFPreferencesAppSynchronize(CFStringRef application) {
  requireOwn(application);
  ++fakeSystem().synchronisations;
  return true;
}

CFBundleRef CFBundleGetMainBundle() {
  static auto* const bundle = new Object(Kind::bundle, true);
  return fakeSystem().hasBundle ? refTo<CFBundleRef>(bundle) : nullptr;
}

CFStringRef CFBundleGetIdentifier(CFBundleRef bundle) {
  requireMain(bundle);
  const auto& identifier = fakeSystem().bundleIdentifier;
  // The bundle keeps it.
  static auto* const text = new String("", true);
  if (!identifier) return nullptr;
  text->text = *identifier;
  return refTo<CFStringRef>(text);
}

CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle) {
  requireMain(bundle);
  return refTo<CFURLRef>(new Url(fakeSystem().bundlePath));
}

CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef name, CFStringRef type,
                                 CFStringRef subdirectory) {
  requireMain(bundle);
  if (subdirectory != nullptr) misuse("a subdirectory of the resources");
  const auto file = std::filesystem::path(fakeSystem().resourceDirectory) /
                    (as<String>(name).text + "." + as<String>(type).text);
  if (!std::filesystem::exists(file)) return nullptr;
  return refTo<CFURLRef>(new Url(file.string()));
}

CFStringRef CFURLCopyPathExtension(CFURLRef url) {
  const auto extension = std::filesystem::path(as<Url>(url).path).extension().string();
  if (extension.empty()) return nullptr;
  return refTo<CFStringRef>(new String(extension.substr(1)));
}

::Boolean CFURLGetFileSystemRepresentation(CFURLRef url, ::Boolean resolveAgainstBase,
                                           UInt8* buffer, CFIndex size) {
  const auto& path = as<Url>(url).path;
  if (!resolveAgainstBase) misuse("a path relative to something");
  if (fakeSystem().pathsHaveNoRepresentation) return false;
  if (path.size() >= static_cast<std::size_t>(size)) return false;
  std::copy_n(path.c_str(), path.size() + 1, buffer);
  return true;
}

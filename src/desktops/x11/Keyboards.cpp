#include "desktops/x11/Keyboards.h"

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/extensions/XInput.h>
#include <X11/extensions/XInput2.h>
#include <algorithm>
#include <string_view>
#include <utility>

#include "desktops/posix/Translation.h"
#include "desktops/posix/TranslationValues.h"
#include "desktops/x11/DeviceKeys.h"

namespace tessarok::x11 {

namespace {

/// Milliseconds; no key is held for so long.
constexpr unsigned kNever = 0xFFFF;

struct EventMask {
  unsigned char bits[XIMaskLen(XI_LASTEVENT)] = {};
  void set(int event) {
    bits[event >> 3] = static_cast<unsigned char>(bits[event >> 3] | 1u << (event & 7));
  }
  XIEventMask forDevice(int device) { return {device, sizeof bits, bits}; }
};

bool hasKeys(const XIDeviceInfo& device) {
  return std::any_of(device.classes, device.classes + device.num_classes,
                     [](const XIAnyClassInfo* part) { return part->type == XIKeyClass; });
}

bool isSynthetic(const XIDeviceInfo& device) {
  return std::string_view(device.name).find("XTEST") != std::string_view::npos;
}

}  // namespace

Keyboards::Keyboards(XConnection& connection) : connection_(connection) {
  EventMask changes;
  changes.set(XI_HierarchyChanged);
  auto mask = changes.forDevice(XIAllDevices);
  XISelectEvents(connection_.display(), connection_.root(), &mask, 1);
  // Raw events come whoever else holds the mouse.
  EventMask buttons;
  buttons.set(XI_RawButtonPress);
  mask = buttons.forDevice(XIAllMasterDevices);
  XISelectEvents(connection_.display(), connection_.root(), &mask, 1);
  for (const int device : present()) {
    keyboards_.push_back({device});
    watch(device);
  }
}

Keyboards::~Keyboards() {
  if (!connection_.isLost()) letGo();
}

std::vector<int> Keyboards::present() {
  if (connection_.isLost()) return {};
  int count = 0;
  auto* devices = XIQueryDevice(connection_.display(), XIAllDevices, &count);
  std::vector<int> found;
  int master = 0;
  for (int i = 0; i < count; ++i) {
    if (devices[i].use == XIMasterKeyboard && master == 0) master = devices[i].deviceid;
  }
  for (int i = 0; i < count; ++i) {
    const auto& device = devices[i];
    // A held keyboard floats: it is attached to nothing.
    const bool isSlave = device.use == XISlaveKeyboard && device.attachment == master;
    const bool isOurs = device.use == XIFloatingSlave && contains(device.deviceid);
    if ((!isSlave && !isOurs) || !hasKeys(device) || device.enabled == 0) continue;
    if (isSynthetic(device)) {
      synthetic_ = device.deviceid;
    } else {
      found.push_back(device.deviceid);
    }
  }
  if (devices != nullptr) XIFreeDeviceInfo(devices);
  return found;
}

std::string Keyboards::nameOf(int device) {
  if (connection_.isLost()) return std::to_string(device);
  int count = 0;
  auto* info = XIQueryDevice(connection_.display(), device, &count);
  std::string name = info != nullptr && count == 1 ? info->name : std::to_string(device);
  if (info != nullptr) XIFreeDeviceInfo(info);
  return name;
}

bool Keyboards::contains(int device) const {
  return std::any_of(keyboards_.begin(), keyboards_.end(),
                     [device](const Keyboard& keyboard) { return keyboard.device == device; });
}

void Keyboards::watch(int device) {
  EventMask keys;
  keys.set(XI_RawKeyPress);
  auto mask = keys.forDevice(device);
  XISelectEvents(connection_.display(), connection_.root(), &mask, 1);
  XkbSelectEvents(connection_.display(), static_cast<unsigned>(device), XkbMapNotifyMask,
                  XkbMapNotifyMask);
}

bool Keyboards::isHeld(int device) const {
  return std::any_of(keyboards_.begin(), keyboards_.end(), [device](const Keyboard& keyboard) {
    return keyboard.device == device && keyboard.isHeld;
  });
}

bool Keyboards::hold(Keyboard& keyboard) {
  if (connection_.isLost()) return false;
  EventMask keys;
  keys.set(XI_KeyPress);
  keys.set(XI_KeyRelease);
  auto mask = keys.forDevice(keyboard.device);
  ErrorTrap errors(connection_);
  keyboard.heldBy = XNextRequest(connection_.display());
  const auto status = XIGrabDevice(connection_.display(), keyboard.device, connection_.root(),
                                   CurrentTime, None, GrabModeAsync, GrabModeAsync, False, &mask);
  // Of an error, as for a keyboard that has just been pulled out, Xlib makes a success.
  keyboard.isHeld = status == GrabSuccess && !errors.failed();
  return keyboard.isHeld;
}

void Keyboards::free(const Keyboard& keyboard) {
  if (!keyboard.isHeld || connection_.isLost()) return;
  XIUngrabDevice(connection_.display(), keyboard.device, CurrentTime);
}

platform::Failure Keyboards::hold() {
  findKeyboards();
  // One that another program holds is attached to nothing, and cannot be told from one that a
  // person has taken out of use.
  if (keyboards_.empty())
    return platform::Failure(
        posix::translatable("there is no keyboard that another program does not hold"));
  isHolding_ = true;
  for (auto& keyboard : keyboards_) {
    if (keyboard.isHeld || !isIdle(keyboard) || hold(keyboard)) continue;
    letGo();
    return platform::Failure(
        posix::withValues(posix::translatable("another program holds the keyboard \"{1}\""),
                          {nameOf(keyboard.device)}));
  }
  silenceSyntheticRepeats();
  return platform::Failure::none();
}

void Keyboards::letGo() {
  if (!std::exchange(isHolding_, false)) return;
  // Most while they are held still: what is pressed behind that overtakes nothing then.
  if (onLettingGo) onLettingGo();
  for (const auto& keyboard : keyboards_)
    free(keyboard);
  if (onLettingGo) onLettingGo();
  for (auto& keyboard : keyboards_)
    keyboard.isHeld = false;
  restoreSyntheticRepeats();
  connection_.flush();
}

bool Keyboards::isIdle() {
  return std::all_of(keyboards_.begin(), keyboards_.end(),
                     [this](const Keyboard& keyboard) { return isIdle(keyboard); });
}

bool Keyboards::isIdle(const Keyboard& keyboard) const {
  return connection_.isLost() || keysDown(connection_.display(), keyboard.device).empty();
}

bool Keyboards::isWaiting() const {
  return isHolding_ && std::any_of(keyboards_.begin(), keyboards_.end(),
                                   [](const Keyboard& keyboard) { return !keyboard.isHeld; });
}

bool Keyboards::isPassedOn(int device, unsigned long serial) const {
  return std::any_of(keyboards_.begin(), keyboards_.end(), [&](const Keyboard& keyboard) {
    return keyboard.device == device && (!keyboard.isHeld || serial < keyboard.heldBy);
  });
}

void Keyboards::findKeyboards(const KeyboardChanges& changes) {
  const auto now = present();
  const auto contains = [](const std::vector<int>& devices, int device) {
    return std::find(devices.begin(), devices.end(), device) != devices.end();
  };
  const auto isGone = [&](const Keyboard& keyboard) {
    // What was held after it changed is held as it is now.
    const bool isOld = keyboard.isHeld && keyboard.heldBy > changes.serial;
    return !contains(now, keyboard.device) ||
           (contains(changes.devices, keyboard.device) && !isOld);
  };
  std::vector<int> gone;
  for (const auto& keyboard : keyboards_) {
    if (isGone(keyboard)) gone.push_back(keyboard.device);
  }
  keyboards_.erase(std::remove_if(keyboards_.begin(), keyboards_.end(), isGone), keyboards_.end());
  for (const int device : gone) {
    if (onGone) onGone(device);
  }
  for (const int device : now) {
    if (this->contains(device)) continue;
    watch(device);
    // What may be left of an earlier hold.
    if (isHolding_) XIUngrabDevice(connection_.display(), device, CurrentTime);
    keyboards_.push_back({device});
  }
}

platform::Failure Keyboards::update(const KeyboardChanges& changes) {
  if (connection_.isLost()) return platform::Failure::none();
  auto* display = connection_.display();
  // Nobody must disable a keyboard between the look at it and the rest.
  XGrabServer(display);
  findKeyboards(changes);
  const bool isComplete = std::all_of(keyboards_.begin(), keyboards_.end(),
                                      [](const Keyboard& keyboard) { return keyboard.isHeld; });
  auto refusal = platform::Failure::none();
  if (isHolding_ && !isComplete) refusal = hold();
  if (!connection_.isLost()) XUngrabServer(display);
  connection_.flush();
  if (isHolding_ && !isComplete) copyKeymap();
  return refusal;
}

void Keyboards::copyKeymap() {
  if (!isHolding_ || connection_.isLost()) return;
  auto* display = connection_.display();
  auto* keymap = XkbGetMap(display, XkbAllMapComponentsMask, XkbUseCoreKbd);
  if (keymap == nullptr) return;
  XkbGetCompatMap(display, XkbAllCompatMask, keymap);
  XkbGetNames(display, XkbAllNamesMask, keymap);
  XkbGetIndicatorMap(display, XkbAllIndicatorsMask, keymap);
  const auto first = XNextRequest(display);
  for (const auto& keyboard : keyboards_) {
    if (!keyboard.isHeld) continue;
    keymap->device_spec = static_cast<unsigned short>(keyboard.device);
    XkbSetMap(display, XkbAllMapComponentsMask, keymap);
    XkbSetCompatMap(display, XkbAllCompatMask, keymap, False);
    XkbSetNames(display, XkbAllNamesMask, 0, keymap->map->num_types, keymap);
    XkbSetIndicatorMap(display, XkbAllIndicatorsMask, keymap);
  }
  endCopy(first);
  XkbFreeKeyboard(keymap, XkbAllComponentsMask, True);
  connection_.flush();
}

void Keyboards::endCopy(unsigned long first) {
  copies_.push_back({first, XNextRequest(connection_.display()) - 1});
  // What others change from now on is told with a later number than that of the copy.
  XNoOp(connection_.display());
}

bool Keyboards::isCopy(unsigned long serial) {
  std::erase_if(copies_, [serial](const Copy& copy) { return copy.last < serial; });
  return std::any_of(copies_.begin(), copies_.end(),
                     [serial](const Copy& copy) { return copy.first <= serial; });
}

bool Keyboards::adoptKeys(const XEvent& event) {
  const auto& change = reinterpret_cast<const XkbEvent&>(event).map;
  if (change.xkb_type != XkbMapNotify || (change.changed & XkbKeySymsMask) == 0) return false;
  if (change.num_key_syms < 1 || isCopy(change.serial)) return false;
  if (!isHeld(change.device) || connection_.isLost()) return false;
  auto* display = connection_.display();
  auto* keymap = XkbGetMap(display, XkbAllMapComponentsMask, static_cast<unsigned>(change.device));
  if (keymap == nullptr) return false;
  XkbMapChangesRec keys{};
  keys.changed = XkbKeySymsMask;
  keys.first_key_sym = static_cast<KeyCode>(change.first_key_sym);
  keys.num_key_syms = static_cast<unsigned char>(change.num_key_syms);
  const auto give = [&](unsigned short device) {
    keymap->device_spec = device;
    XkbChangeMap(display, keymap, &keys);
  };
  const auto first = XNextRequest(display);
  give(XkbUseCoreKbd);
  for (const auto& keyboard : keyboards_) {
    const bool isOther = keyboard.isHeld && keyboard.device != change.device;
    if (isOther) give(static_cast<unsigned short>(keyboard.device));
  }
  endCopy(first);
  XkbFreeKeyboard(keymap, XkbAllComponentsMask, True);
  return true;
}

void Keyboards::silenceSyntheticRepeats() {
  if (!isHolding_ || synthetic_ == 0 || connection_.isLost()) return;
  unsigned delay = 0;
  unsigned interval = 0;
  const auto device = static_cast<unsigned>(synthetic_);
  if (XkbGetAutoRepeatRate(connection_.display(), device, &delay, &interval) == 0) return;
  if (delay == kNever) return;
  XkbSetAutoRepeatRate(connection_.display(), device, kNever, kNever);
}

void Keyboards::restoreSyntheticRepeats() {
  if (synthetic_ == 0 || keyboards_.empty() || connection_.isLost()) return;
  copyRepeatRate(connection_.display(), keyboards_.front().device, synthetic_);
}

}  // namespace tessarok::x11

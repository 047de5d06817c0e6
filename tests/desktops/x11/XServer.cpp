#include "tests/desktops/x11/XServer.h"

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/extensions/XInput.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/XTest.h>
#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <stdexcept>
#include <unistd.h>

#include "desktops/xkb/HardwareKeys.h"
#include "tests/desktops/x11/KeyCodes.h"
#include "tests/desktops/x11/Patience.h"
#include "tests/desktops/xkb/StrokeOf.h"

namespace tessarok::testing {

namespace {

constexpr int kPatienceMilliseconds = static_cast<int>(kPatience * 1000);

/// The names of the keyboards, and of the sockets at which their hands are.
constexpr std::array<const char*, 2> kSockets = {"left", "right"};

std::string configurationOf(const std::filesystem::path& folder) {
  std::string text = R"(
Section "ServerFlags"
  Option "AutoAddDevices" "false"
  Option "AutoAddGPU" "false"
EndSection
Section "Device"
  Identifier "screen"
  Driver "dummy"
EndSection
Section "Screen"
  Identifier "screen"
  Device "screen"
EndSection
)";
  std::string layout = "Section \"ServerLayout\"\n  Identifier \"layout\"\n  Screen \"screen\"\n";
  for (const std::string name : kSockets) {
    text += "Section \"InputDevice\"\n  Identifier \"" + name +
            "\"\n  Driver \"inputtest\"\n  Option \"DeviceType\" \"Keyboard\"\n"
            "  Option \"SocketPath\" \"" +
            (folder / name).string() + "\"\nEndSection\n";
    layout += "  InputDevice \"" + name + "\"\n";
  }
  return text + layout + "EndSection\n";
}

/// The number that the server writes when it is ready.
std::string readNumber(int pipe) {
  std::string text;
  while (text.empty() || text.back() != '\n') {
    pollfd waiting{pipe, POLLIN, 0};
    char byte = 0;
    if (::poll(&waiting, 1, kPatienceMilliseconds) <= 0 || ::read(pipe, &byte, 1) != 1) {
      throw std::runtime_error("Xvfb does not start");
    }
    text += byte;
  }
  text.pop_back();
  return text;
}

int ignoreError(Display*, XErrorEvent*) {
  return 0;
}

}  // namespace

XServer::XServer(const std::string& layouts, const std::string& options, Hardware hardware)
    : hardware_(hardware) {
  start();
  takeKeyboard(0);
  setLayouts(layouts, options);
}

XServer::~XServer() {
  if (device_ != nullptr) XCloseDevice(display_, static_cast<XDevice*>(device_));
  if (display_ != nullptr) XCloseDisplay(display_);
}

void XServer::start() {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("cannot make a pipe");
  Subprocess::Setup setup;
  setup.descriptor = ends[1];
  // Without -noreset the layout would go with the last program.
  auto line = command();
  line.insert(line.end(), {"-displayfd", std::to_string(ends[1]), "-noreset", "-nolisten", "tcp"});
  server_ = std::make_unique<Subprocess>(
      line, hardware_ == Hardware::twoKeyboards ? "xserver-xorg-core" : "xvfb", setup);
  ::close(ends[1]);
  name_ = ":" + readNumber(ends[0]);
  ::close(ends[0]);
  XSetErrorHandler(&ignoreError);
  display_ = XOpenDisplay(name_.c_str());
  if (display_ == nullptr) throw std::runtime_error("cannot open the display " + name_);
  // Without having said so a program gets no raw events of keyboards that another one holds.
  int major = 2;
  int minor = 2;
  XIQueryVersion(display_, &major, &minor);
}

std::vector<std::string> XServer::command() {
  if (hardware_ == Hardware::oneKeyboard) return {"Xvfb", "-screen", "0", "800x600x24"};
  if (hardware_ == Hardware::noSyntheticKeys) return {"Xvfb", "-extension", "XTEST"};
  const auto configuration = folder_.path() / "xorg.conf";
  std::ofstream(configuration) << configurationOf(folder_.path());
  // Without a look at the machine's own devices and terminals.
  return {"/usr/lib/xorg/Xorg",
          "-config",
          configuration.string(),
          "-logfile",
          (folder_.path() / "log").string(),
          "-novtswitch",
          "-sharevts"};
}

void XServer::takeKeyboard(std::size_t number) {
  if (device_ != nullptr) XCloseDevice(display_, static_cast<XDevice*>(device_));
  if (hardware_ != Hardware::twoKeyboards) return findKeyboard("Xvfb keyboard");
  while (hands_.size() < kSockets.size())
    hands_.push_back(std::make_unique<TestKeyboard>(folder_.path() / kSockets[hands_.size()]));
  hand_ = hands_.at(number).get();
  findKeyboard(kSockets.at(number));
  // Raw events tell what the server has read, whoever gets the keys.
  int event = 0;
  int error = 0;
  XQueryExtension(display_, "XInputExtension", &inputOpcode_, &event, &error);
  unsigned char bits[XIMaskLen(XI_LASTEVENT)] = {};
  XISetMask(bits, XI_RawKeyPress);
  XISetMask(bits, XI_RawKeyRelease);
  XIEventMask mask{keyboard_, sizeof bits, bits};
  XISelectEvents(display_, DefaultRootWindow(display_), &mask, 1);
}

void XServer::findKeyboard(std::string_view name) {
  int count = 0;
  auto* devices = XIQueryDevice(display_, XIAllDevices, &count);
  for (int i = 0; i < count; ++i) {
    if (devices[i].name == name) keyboard_ = devices[i].deviceid;
  }
  XIFreeDeviceInfo(devices);
  device_ = XOpenDevice(display_, static_cast<XID>(keyboard_));
  if (device_ == nullptr) throw std::runtime_error("the server has no such keyboard");
}

void XServer::setLayouts(const std::string& layouts, const std::string& options,
                         const std::string& variants) {
  std::vector<std::string> command{"setxkbmap", "-display", name_,     "-layout", layouts,
                                   "-variant",  variants,   "-option", ""};
  if (!options.empty()) command.insert(command.end(), {"-option", options});
  Subprocess program(command, "x11-xkb-utils", {});
  if (program.exitStatus() != 0) throw std::runtime_error("setxkbmap failed");
}

void XServer::type(std::string_view text) {
  for (const char character : text) {
    const auto stroke = strokeOf(character);
    if (stroke.shift) key(kShift, true);
    tap(xkb::hardwareKeys::xKeyOf(stroke.code));
    if (stroke.shift) key(kShift, false);
  }
  sync();
}

void XServer::typeByHand(std::string_view text) {
  constexpr unsigned long kApart = 10;
  for (const char character : text) {
    const auto code = xkb::hardwareKeys::xKeyOf(strokeOf(character).code);
    key(code, true, kApart);
    key(code, false, kApart);
  }
  sync();
}

void XServer::key(std::uint8_t key, bool isDown, unsigned long delay) {
  if (hand_ != nullptr) {
    ++unread_;
    return hand_->key(key, isDown);
  }
  XTestFakeDeviceKeyEvent(display_, static_cast<XDevice*>(device_), key, isDown ? True : False,
                          nullptr, 0, delay);
  XFlush(display_);
}

void XServer::tap(std::uint8_t code) {
  key(code, true);
  key(code, false);
}

void XServer::tapWith(std::uint8_t held, std::uint8_t code) {
  key(held, true);
  tap(code);
  key(held, false);
}

void XServer::syntheticKey(std::uint8_t code, bool isDown) {
  XTestFakeKeyEvent(display_, code, isDown ? True : False, CurrentTime);
  sync();
}

void XServer::click() {
  XTestFakeButtonEvent(display_, 1, True, CurrentTime);
  XTestFakeButtonEvent(display_, 1, False, CurrentTime);
  sync();
}

void XServer::sync() {
  XSync(display_, False);
  if (hand_ != nullptr && !waitUntil([this] { return readKeys() <= 0; })) {
    throw std::runtime_error("the server does not read its keyboards");
  }
  // A keyboard that is disabled releases its keys by itself.
  unread_ = 0;
}

int XServer::readKeys() {
  while (XPending(display_) > 0) {
    XEvent event;
    XNextEvent(display_, &event);
    if (event.type == GenericEvent && event.xcookie.extension == inputOpcode_) --unread_;
  }
  return unread_;
}

unsigned XServer::group() {
  XkbStateRec state{};
  XkbGetState(display_, XkbUseCoreKbd, &state);
  return state.group;
}

void XServer::lockGroup(unsigned group) {
  XkbLockGroup(display_, XkbUseCoreKbd, group);
  sync();
}

bool XServer::isCapsLocked() {
  XkbStateRec state{};
  XkbGetState(display_, XkbUseCoreKbd, &state);
  return (state.locked_mods & LockMask) != 0;
}

std::vector<std::uint8_t> XServer::keysDown() {
  char bits[32];
  XQueryKeymap(display_, bits);
  std::vector<std::uint8_t> keys;
  for (unsigned code = 0; code < 256; ++code) {
    if ((static_cast<unsigned char>(bits[code / 8]) >> (code % 8) & 1u) != 0) {
      keys.push_back(static_cast<std::uint8_t>(code));
    }
  }
  return keys;
}

void XServer::setKeyboardEnabled(bool enabled) {
  const Atom property = XInternAtom(display_, "Device Enabled", False);
  unsigned char value = enabled ? 1 : 0;
  XIChangeProperty(display_, keyboard_, property, XA_INTEGER, 8, XIPropModeReplace, &value, 1);
  sync();
  // The driver hangs up when its device is disabled.
  if (hand_ != nullptr && enabled) hand_->connect();
}

void XServer::serveNobodyElse() {
  XGrabServer(display_);
  sync();
}

void XServer::serveAll() {
  XUngrabServer(display_);
  sync();
}

void XServer::addMasters(std::string name) {
  XIAnyHierarchyChangeInfo change{};
  change.add.type = XIAddMaster;
  change.add.name = name.data();
  change.add.send_core = True;
  change.add.enable = True;
  XIChangeHierarchy(display_, &change, 1);
  sync();
}

bool XServer::isKeyboardHeld() {
  int count = 0;
  auto* info = XIQueryDevice(display_, keyboard_, &count);
  const bool isHeld = info != nullptr && count == 1 && info->use == XIFloatingSlave;
  if (info != nullptr) XIFreeDeviceInfo(info);
  return isHeld;
}

unsigned long XServer::symbolOnTheKeyboard(std::uint8_t code) {
  auto* keymap = XkbGetMap(display_, XkbAllMapComponentsMask, static_cast<unsigned>(keyboard_));
  if (keymap == nullptr) return 0;
  const auto symbol = XkbKeySymEntry(keymap, code, 0, 0);
  XkbFreeKeyboard(keymap, XkbAllComponentsMask, True);
  return symbol;
}

void XServer::bindKey(std::uint8_t code, char32_t character) {
  // Symbols of Unicode are the number of the character in a block of their own.
  KeySym symbol = 0x01000000u | character;
  XChangeKeyboardMapping(display_, code, 1, &symbol, 1);
  sync();
}

void XServer::setKeysOfLayouts(const std::string& layouts) {
  constexpr KeyCode kFirst = 8;
  constexpr int kKeys = 248;
  XServer other(layouts);
  int width = 0;
  KeySym* symbols = XGetKeyboardMapping(other.display_, kFirst, kKeys, &width);
  XChangeKeyboardMapping(display_, kFirst, width, symbols, kKeys);
  XFree(symbols);
  setNamesOfLayouts(layouts);
}

void XServer::setNamesOfLayouts(const std::string& layouts) {
  const Atom property = XInternAtom(display_, "_XKB_RULES_NAMES", False);
  const auto names = "evdev" + std::string(1, '\0') + "pc105" + std::string(1, '\0') + layouts +
                     std::string(3, '\0');
  XChangeProperty(display_, DefaultRootWindow(display_), property, XA_STRING, 8, PropModeReplace,
                  reinterpret_cast<const unsigned char*>(names.data()),
                  static_cast<int>(names.size()));
  sync();
}

void XServer::bindKeyOfTheKeyboard(std::uint8_t code, char32_t character) {
  auto* keymap = XkbGetMap(display_, XkbAllMapComponentsMask, static_cast<unsigned>(keyboard_));
  if (keymap == nullptr) throw std::runtime_error("the keyboard has no keymap");
  int type = XkbOneLevelIndex;
  XkbMapChangesRec changes{};
  XkbChangeTypesOfKey(keymap, code, 1, XkbGroup1Mask, &type, &changes);
  *XkbKeySymsPtr(keymap, code) = 0x01000000u | character;
  changes.changed |= XkbKeySymsMask;
  changes.first_key_sym = code;
  changes.num_key_syms = 1;
  XkbChangeMap(display_, keymap, &changes);
  XkbFreeKeyboard(keymap, XkbAllComponentsMask, True);
  sync();
}

void XServer::pause() {
  server_->send(SIGSTOP);
}

void XServer::resume() {
  server_->send(SIGCONT);
}

void XServer::stop() {
  hand_ = nullptr;
  hands_.clear();
  XCloseDevice(display_, static_cast<XDevice*>(device_));
  XCloseDisplay(display_);
  device_ = nullptr;
  display_ = nullptr;
  server_.reset();
}

void XServer::focus(unsigned long window) {
  XSetInputFocus(display_, window, RevertToParent, CurrentTime);
  sync();
}

std::vector<unsigned long> XServer::windows() {
  Window root = 0;
  Window parent = 0;
  Window* children = nullptr;
  unsigned count = 0;
  std::vector<unsigned long> found;
  if (XQueryTree(display_, DefaultRootWindow(display_), &root, &parent, &children, &count) == 0) {
    return found;
  }
  for (unsigned i = 0; i < count; ++i) {
    XWindowAttributes attributes{};
    const bool known = XGetWindowAttributes(display_, children[i], &attributes) != 0;
    if (known && attributes.map_state == IsViewable) found.push_back(children[i]);
  }
  if (children != nullptr) XFree(children);
  return found;
}

}  // namespace tessarok::testing

#include "desktops/x11/XConnection.h"

#include <X11/XKBlib.h>
#include <X11/Xlib-xcb.h>
#include <X11/Xlib.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/XTest.h>
#include <X11/extensions/Xrandr.h>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "desktops/posix/Translation.h"
#include "desktops/posix/TranslationValues.h"

namespace tessarok::x11 {

namespace {

/// Errors of all requests so far; Xlib tells them to a function, not to an object.
unsigned long errorCount = 0;

int noteError(Display*, XErrorEvent*) {
  ++errorCount;
  return 0;
}

/// What ends the process while the connection is being opened.
XConnection::End endWithoutServer = nullptr;

int endProcess(Display*) {
  endWithoutServer();
  std::abort();
}

/// In place of the one of Xlib, which tells it; what is to happen is for the connection's own exit
/// handler.
int ignoreLoss(Display*) {
  return 0;
}

/// The older servers of Wayland sessions do not say by an extension what they are.
bool hasWaylandScreen(Display* display) {
  int event = 0;
  int error = 0;
  if (XRRQueryExtension(display, &event, &error) == 0) return false;
  auto* resources = XRRGetScreenResourcesCurrent(display, DefaultRootWindow(display));
  if (resources == nullptr) return false;
  bool found = false;
  for (int i = 0; i < resources->noutput; ++i) {
    auto* output = XRRGetOutputInfo(display, resources, resources->outputs[i]);
    if (output == nullptr) continue;
    found = found || std::string_view(output->name).find("XWAYLAND") == 0;
    XRRFreeOutputInfo(output);
  }
  XRRFreeScreenResources(resources);
  return found;
}

/// A server that runs inside a Wayland session sees keys only while one of its own windows has
/// them, and cannot switch the layout of the others.
bool isInsideWayland(Display* display) {
  int opcode = 0;
  int event = 0;
  int error = 0;
  if (XQueryExtension(display, "XWAYLAND", &opcode, &event, &error) != 0) return true;
  if (hasWaylandScreen(display)) return true;
  int count = 0;
  auto* devices = XIQueryDevice(display, XIAllDevices, &count);
  bool found = false;
  for (int i = 0; i < count; ++i) {
    found = found || std::string_view(devices[i].name).find("xwayland-") == 0;
  }
  if (devices != nullptr) XIFreeDeviceInfo(devices);
  return found;
}

}  // namespace

std::variant<std::unique_ptr<XConnection>, std::string> XConnection::open(End serverGone) {
  XSetErrorHandler(&noteError);
  endWithoutServer = serverGone;
  XSetIOErrorHandler(&endProcess);
  auto* display = XOpenDisplay(nullptr);
  if (display == nullptr) {
    const char* name = std::getenv("DISPLAY");
    return posix::withValues(posix::translatable("cannot open the display \"{1}\""),
                             {name == nullptr ? "" : name});
  }
  std::unique_ptr<XConnection> connection(new XConnection(display));
  if (auto missing = connection->prepare(); !missing.empty()) return missing;
  return connection;
}

XConnection::XConnection(Display* display) : display_(display), root_(DefaultRootWindow(display)) {}

XConnection::~XConnection() {
  // What was asked for has its effect before anything else happens.
  if (!isLost()) XSync(display_, False);
}

int XConnection::descriptor() const {
  return ConnectionNumber(display_);
}

bool XConnection::isLost() {
  if (!isLost_ && xcb_connection_has_error(XGetXCBConnection(display_)) != 0) lose();
  return isLost_;
}

void XConnection::lose() {
  if (std::exchange(isLost_, true)) return;
  if (onLost) onLost();
}

void XConnection::flush() {
  if (!isLost()) XFlush(display_);
}

std::string XConnection::prepare() {
  int event = 0;
  int error = 0;
  if (XQueryExtension(display_, "XInputExtension", &inputOpcode_, &event, &error) == 0) {
    return posix::translatable("the X server has no XInput extension");
  }
  int major = 2;
  int minor = 2;
  if (XIQueryVersion(display_, &major, &minor) != Success || major < 2) {
    return posix::translatable("the X server has no XInput 2");
  }
  int opcode = 0;
  if (XTestQueryExtension(display_, &event, &error, &major, &minor) == 0) {
    return posix::translatable("the X server has no XTEST extension");
  }
  int xkbMajor = XkbMajorVersion;
  int xkbMinor = XkbMinorVersion;
  if (XkbQueryExtension(display_, &opcode, &xkbEvent_, &error, &xkbMajor, &xkbMinor) == 0) {
    return posix::translatable("the X server has no XKB extension");
  }
  if (isInsideWayland(display_)) {
    return posix::translatable(
        "this display is part of a Wayland session, in which an X11 program sees only the keys "
        "of X11 windows");
  }
  // Keys must go on while another program holds the server.
  XTestGrabControl(display_, True);
  // Only from here on: in the middle of these questions some of Xlib's relatives would crash.
  watchForLoss();
  return {};
}

void XConnection::watchForLoss() {
  XSetIOErrorHandler(&ignoreLoss);
  XSetIOErrorExitHandler(
      display_, [](Display*, void* data) { static_cast<XConnection*>(data)->lose(); }, this);
}

ErrorTrap::ErrorTrap(XConnection& connection) : connection_(connection) {
  if (!connection_.isLost()) XSync(connection_.display(), False);
  before_ = errorCount;
}

bool ErrorTrap::failed() {
  if (connection_.isLost()) return true;
  XSync(connection_.display(), False);
  return errorCount != before_;
}

}  // namespace tessarok::x11

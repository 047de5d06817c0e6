// The calls that the two processes of the program make of the system on an X11 display, of Xlib and
// of its relatives. Those of Xlib fail in the way that they have, whatever the number. See
// FaultLibrary.h.

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/extensions/XInput.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/XTest.h>
#include <iterator>
#include <poll.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/timerfd.h>
#include <sys/uio.h>
#include <unistd.h>
#include <xkbcommon/xkbcommon-x11.h>

#include "tests/fault/FaultLibrary.h"

using tessarok::faults::failingError;
using tessarok::faults::fails;
using tessarok::faults::real;

namespace {

/// For a call on a connection. One that is lost stays lost.
bool loses(const char* call, int file) {
  if (!fails(call)) return false;
  const int error = errno;
  if (error == ECONNRESET || error == EPIPE) ::shutdown(file, SHUT_RDWR);
  errno = error;
  return true;
}

}  // namespace

// NOLINTBEGIN: the names and types are those of the libraries.
#define LOSING(result, name, arguments, values) \
  result name arguments {                       \
    REAL(name);                                 \
    if (loses(#name, file)) return -1;          \
    return next values;                         \
  }

extern "C" {

pid_t fork() {
  REAL(fork);
  if (fails("fork")) return -1;
  static constexpr const char* kNames[] = {"worker", "releaser", "releaser2"};
  static std::size_t children = 0;
  const auto number = children++;
  const pid_t child = next();
  if (child == 0 && number < std::size(kNames)) tessarok::faults::become(kNames[number]);
  return child;
}
FAILING_OPEN(open)
FAILING(ssize_t, read, -1, (int file, void* to, size_t size), (file, to, size))
FAILING(ssize_t, write, -1, (int file, const void* from, size_t size), (file, from, size))
LOSING(ssize_t, recv, (int file, void* to, size_t size, int flags), (file, to, size, flags))
LOSING(ssize_t, send, (int file, const void* from, size_t size, int flags),
       (file, from, size, flags))
LOSING(ssize_t, recvmsg, (int file, msghdr* message, int flags), (file, message, flags))
LOSING(ssize_t, sendmsg, (int file, const msghdr* message, int flags), (file, message, flags))
LOSING(ssize_t, writev, (int file, const iovec* parts, int count), (file, parts, count))
int poll(pollfd* files, nfds_t count, int milliseconds) {
  REAL(poll);
  // The main loops wait for several files, libraries for one.
  return fails(count > 1 ? "poll" : "poll-of-one") ? -1 : next(files, count, milliseconds);
}
FAILING(int, socket, -1, (int domain, int type, int protocol) noexcept, (domain, type, protocol))
FAILING(int, socketpair, -1, (int domain, int type, int protocol, int ends[2]) noexcept,
        (domain, type, protocol, ends))
FAILING(int, connect, -1, (int file, const sockaddr* address, socklen_t size),
        (file, address, size))
FAILING(int, pipe2, -1, (int ends[2], int flags) noexcept, (ends, flags))
FAILING(int, timerfd_create, -1, (int clock, int flags) noexcept, (clock, flags))
FAILING(void*, mmap, MAP_FAILED,
        (void* at, size_t size, int protection, int flags, int file, off_t offset) noexcept,
        (at, size, protection, flags, file, offset))
// This one answers with the number itself.
FAILING(int, pthread_create, failingError,
        (pthread_t * thread, const pthread_attr_t* attributes, void* (*start)(void*),
         void* argument) noexcept,
        (thread, attributes, start, argument))

FAILING(Display*, XOpenDisplay, nullptr, (const char* name), (name))
FAILING(XIDeviceInfo*, XIQueryDevice, (*count = 0, nullptr), (Display * d, int device, int* count),
        (d, device, count))
FAILING(int, XISelectEvents, BadValue, (Display * d, Window window, XIEventMask* masks, int count),
        (d, window, masks, count))
FAILING(Status, XTestGrabControl, 0, (Display * d, Bool impervious), (d, impervious))
FAILING(Bool, XkbLockGroup, False, (Display * d, unsigned device, unsigned group),
        (d, device, group))
FAILING(Status, XkbGetState, BadAlloc, (Display * d, unsigned device, XkbStatePtr state),
        (d, device, state))
FAILING(XkbDescPtr, XkbGetMap, nullptr, (Display * d, unsigned parts, unsigned device),
        (d, parts, device))
FAILING(Bool, XkbSelectEvents, False,
        (Display * d, unsigned device, unsigned bits, unsigned values), (d, device, bits, values))
FAILING(Bool, XkbGetAutoRepeatRate, False,
        (Display * d, unsigned device, unsigned* delay, unsigned* interval),
        (d, device, delay, interval))
FAILING(XkbDescPtr, XkbAllocKeyboard, nullptr, (), ())
FAILING(Status, XkbGetGeometry, BadAlloc, (Display * d, XkbDescPtr keyboard), (d, keyboard))
FAILING(XDevice*, XOpenDevice, nullptr, (Display * d, XID device), (d, device))
FAILING(XDeviceState*, XQueryDeviceState, nullptr, (Display * d, XDevice* device), (d, device))
FAILING(Atom, XInternAtom, None, (Display * d, const char* name, Bool onlyIfExists),
        (d, name, onlyIfExists))
FAILING(int, XGetWindowProperty, BadAlloc,
        (Display * d, Window window, Atom property, long offset, long length, Bool remove,
         Atom type, Atom* actual, int* format, unsigned long* count, unsigned long* rest,
         unsigned char** data),
        (d, window, property, offset, length, remove, type, actual, format, count, rest, data))
FAILING(xkb_keymap*, xkb_x11_keymap_new_from_device, nullptr,
        (xkb_context * context, xcb_connection_t* connection, int32_t device,
         xkb_keymap_compile_flags flags),
        (context, connection, device, flags))
FAILING(xkb_context*, xkb_context_new, nullptr, (xkb_context_flags flags), (flags))

// Another program was faster, with error number 0; else the server answers with an error, of which
// Xlib makes a success.
int XIGrabDevice(Display* d, int device, Window window, Time time, Cursor cursor, int mode,
                 int otherMode, Bool ownerEvents, XIEventMask* mask) {
  REAL(XIGrabDevice);
  if (!fails("XIGrabDevice")) {
    return next(d, device, window, time, cursor, mode, otherMode, ownerEvents, mask);
  }
  if (failingError == 0) return AlreadyGrabbed;
  constexpr int kNoDevice = 250;
  return next(d, kNoDevice, window, time, cursor, mode, otherMode, ownerEvents, mask);
}

}  // extern "C"
// NOLINTEND

// A library to be loaded before the program (LD_PRELOAD): it counts the calls that one of the
// program's two processes makes of the system, of Xlib and of its relatives, and makes one of them
// fail.
//
//   TESSAROK_X11_FAULT=worker:poll:3:4    the third poll of the worker fails with error number 4;
//                                         the other process is called "watchdog". Calls of Xlib
//                                         fail in the way that they have, whatever the number.
//   TESSAROK_X11_FAULT_COUNTS=FILE        at the end, how often each was called goes into FILE and
//                                         the name of the process

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/extensions/XInput.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/XTest.h>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/timerfd.h>
#include <sys/uio.h>
#include <unistd.h>
#include <xkbcommon/xkbcommon-x11.h>

namespace {

struct Counter {
  const char* name = nullptr;
  std::atomic<int> count = 0;
};

// In the order in which they were first called; a name is one literal, wherever it stands.
std::array<Counter, 64> counters;
std::atomic<int> kinds = 0;

char failingProcess[16];
char failingCall[64];
int failingNumber = 0;
int failingError = 0;
char countsFile[4096];
const char* process = "watchdog";
bool isReady = false;

__attribute__((constructor)) void readEnvironment() {
  if (const char* fault = std::getenv("TESSAROK_X11_FAULT")) {
    if (std::sscanf(fault, "%15[^:]:%63[^:]:%d:%d", failingProcess, failingCall, &failingNumber,
                    &failingError) != 4) {
      std::abort();
    }
  }
  if (const char* file = std::getenv("TESSAROK_X11_FAULT_COUNTS")) {
    std::snprintf(countsFile, sizeof countsFile, "%s", file);
  }
  unsetenv("TESSAROK_X11_FAULT");
  unsetenv("TESSAROK_X11_FAULT_COUNTS");
  unsetenv("LD_PRELOAD");
  isReady = true;
}

__attribute__((destructor)) void writeCounts() {
  isReady = false;
  if (countsFile[0] == '\0') return;
  const auto name = std::string(countsFile) + "." + process;
  auto* file = std::fopen(name.c_str(), "w");
  if (file == nullptr) return;
  for (int i = 0; i < kinds; ++i) {
    const auto& counter = counters[static_cast<std::size_t>(i)];
    std::fprintf(file, "%s %d\n", counter.name, counter.count.load());
  }
  std::fclose(file);
}

int countOf(const char* call) {
  for (int i = 0; i < kinds; ++i) {
    auto& counter = counters[static_cast<std::size_t>(i)];
    if (std::strcmp(counter.name, call) == 0) return ++counter.count;
  }
  auto& counter = counters[static_cast<std::size_t>(kinds++)];
  counter.name = call;
  return ++counter.count;
}

/// Whether this call is the one that fails; errno is set then.
bool fails(const char* call) {
  if (!isReady) return false;
  const int number = countOf(call);
  if (number != failingNumber || std::strcmp(call, failingCall) != 0) return false;
  if (std::strcmp(process, failingProcess) != 0) return false;
  errno = failingError;
  return true;
}

/// The same for a call on a connection. One that is lost stays lost.
bool fails(const char* call, int file) {
  if (!fails(call)) return false;
  const int error = errno;
  if (error == ECONNRESET || error == EPIPE) ::shutdown(file, SHUT_RDWR);
  errno = error;
  return true;
}

template <typename Function>
Function real(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// NOLINTBEGIN: the names and types are those of the libraries.
#define REAL(name) static const auto next = real<decltype(&::name)>(#name)
/// A function of any arguments that answers `failure` when it fails.
#define FAILING(result, name, failure, arguments, values) \
  result name arguments {                                 \
    REAL(name);                                           \
    if (fails(#name)) return failure;                     \
    return next values;                                   \
  }
/// The same for functions that use a connection.
#define LOSING(result, name, arguments, values) \
  result name arguments {                       \
    REAL(name);                                 \
    if (fails(#name, file)) return -1;          \
    return next values;                         \
  }

extern "C" {

pid_t fork() {
  REAL(fork);
  if (fails("fork")) return -1;
  const pid_t child = next();
  if (child == 0) {
    process = "worker";
    for (auto& counter : counters)
      counter.count = 0;
  }
  return child;
}
int open(const char* path, int flags, ...) {
  static const auto next = real<int (*)(const char*, int, ...)>("open");
  va_list list;
  va_start(list, flags);
  const auto mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(list, mode_t) : 0;
  va_end(list);
  return fails("open") ? -1 : next(path, flags, mode);
}
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
FAILING(int, socket, -1, (int domain, int type, int protocol), (domain, type, protocol))
FAILING(int, socketpair, -1, (int domain, int type, int protocol, int ends[2]),
        (domain, type, protocol, ends))
FAILING(int, connect, -1, (int file, const sockaddr* address, socklen_t size),
        (file, address, size))
FAILING(int, pipe2, -1, (int ends[2], int flags), (ends, flags))
int timerfd_create(int clock, int flags) noexcept {
  REAL(timerfd_create);
  return fails("timerfd_create") ? -1 : next(clock, flags);
}
void* mmap(void* at, size_t size, int protection, int flags, int file, off_t offset) noexcept {
  REAL(mmap);
  return fails("mmap") ? MAP_FAILED : next(at, size, protection, flags, file, offset);
}
int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                   void* argument) noexcept {
  REAL(pthread_create);
  // This one answers with the number itself.
  return fails("pthread_create") ? failingError : next(thread, attributes, start, argument);
}

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

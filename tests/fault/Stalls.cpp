// A library to be loaded before a program (LD_PRELOAD): every call that names a file below the
// folder TESSAROK_STALL_UNDER (from the home folder on, where no / is in front) does not answer
// before the file TESSAROK_STALL_UNTIL is there. So a disk behaves that has to wake up, or a server
// that holds the home folders. A byte is added to the file TESSAROK_STALL_COUNT for every call that
// has begun to wait.
//
// Once the file TESSAROK_STALL_LOST is there, and until TESSAROK_STALL_UNTIL is, memory has lost
// the open files below TESSAROK_STALL_READS: they are not in memory when a call asks for what is,
// and reading them waits.

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

char under[4096];
char until[4096];
char count[4096];
char reads[4096];
char lost[4096];

void keep(const char* name, char (&value)[4096]) {
  if (const char* given = std::getenv(name)) std::strncpy(value, given, sizeof value - 1);
}

__attribute__((constructor)) void readEnvironment() {
  keep("TESSAROK_STALL_UNDER", under);
  if (*under != 0 && *under != '/') {
    const auto name = std::string(under);
    keep("HOME", under);
    std::strncat(under, ("/" + name).c_str(), sizeof under - std::strlen(under) - 1);
  }
  keep("TESSAROK_STALL_UNTIL", until);
  keep("TESSAROK_STALL_COUNT", count);
  keep("TESSAROK_STALL_READS", reads);
  keep("TESSAROK_STALL_LOST", lost);
  // Programs that the program starts run undisturbed.
  ::unsetenv("LD_PRELOAD");
}

bool isThere(const char* file) {
  return ::syscall(SYS_faccessat, AT_FDCWD, file, F_OK) == 0;
}

bool isBelow(const char* path, const char* folder) {
  return *folder != 0 && std::strncmp(path, folder, std::strlen(folder)) == 0;
}

bool isLost(int descriptor) {
  if (*reads == 0 || !isThere(lost) || isThere(until)) return false;
  char link[64];
  char path[4096] = "";
  std::snprintf(link, sizeof link, "/proc/self/fd/%d", descriptor);
  const auto size = ::syscall(SYS_readlinkat, AT_FDCWD, link, path, sizeof path - 1);
  return size > 0 && isBelow(path, reads);
}

void wait() {
  const auto file = ::syscall(SYS_openat, AT_FDCWD, count, O_WRONLY | O_APPEND | O_CREAT, 0600);
  static_cast<void>(!::syscall(SYS_write, file, ".", 1));
  ::syscall(SYS_close, file);
  while (!isThere(until))
    ::usleep(5000);
}

void stall(const char* path) {
  if (path != nullptr && isBelow(path, under) && !isThere(until)) wait();
}

template <typename Function>
Function* next(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

// NOLINTBEGIN: the C library decides the names and the types.
#define STALLING(result, name, parameters, arguments)   \
  extern "C" result name parameters {                   \
    stall(path);                                        \
    static auto* real = next<result parameters>(#name); \
    return real arguments;                              \
  }

STALLING(int, stat, (const char* path, struct stat* status), (path, status))
STALLING(int, lstat, (const char* path, struct stat* status), (path, status))
STALLING(int, access, (const char* path, int mode), (path, mode))
STALLING(int, mkdir, (const char* path, mode_t mode), (path, mode))
STALLING(int, unlink, (const char* path), (path))
STALLING(int, rename, (const char* path, const char* target), (path, target))
STALLING(int, mkostemp, (char* path, int flags), (path, flags))
STALLING(int, mkstemp, (char* path), (path))
STALLING(ssize_t, readlink, (const char* path, char* text, size_t size), (path, text, size))
STALLING(DIR*, opendir, (const char* path), (path))

#define STALLING_PREAD(name)                                                  \
  extern "C" ssize_t name(int file, void* buffer, size_t size, off_t place) { \
    if (isLost(file)) wait();                                                 \
    static auto* real = next<ssize_t(int, void*, size_t, off_t)>(#name);      \
    return real(file, buffer, size, place);                                   \
  }

STALLING_PREAD(pread)
STALLING_PREAD(pread64)

#define STALLING_PREADV2(name)                                                                \
  extern "C" ssize_t name(int file, const iovec* parts, int number, off_t place, int flags) { \
    if (isLost(file)) {                                                                       \
      errno = EAGAIN;                                                                         \
      return -1;                                                                              \
    }                                                                                         \
    static auto* real = next<ssize_t(int, const iovec*, int, off_t, int)>(#name);             \
    return real(file, parts, number, place, flags);                                           \
  }

STALLING_PREADV2(preadv2)
STALLING_PREADV2(preadv64v2)

#define STALLING_OPEN(name)                                      \
  extern "C" int name(const char* path, int flags, ...) {        \
    stall(path);                                                 \
    va_list rest;                                                \
    va_start(rest, flags);                                       \
    const auto mode = static_cast<mode_t>(va_arg(rest, int));    \
    va_end(rest);                                                \
    static auto* real = next<int(const char*, int, ...)>(#name); \
    return real(path, flags, mode);                              \
  }

STALLING_OPEN(open)
STALLING_OPEN(open64)

extern "C" int openat(int folder, const char* path, int flags, ...) {
  stall(path);
  va_list rest;
  va_start(rest, flags);
  const auto mode = static_cast<mode_t>(va_arg(rest, int));
  va_end(rest);
  static auto* real = next<int(int, const char*, int, ...)>("openat");
  return real(folder, path, flags, mode);
}
// NOLINTEND

// A library to be loaded before a program (LD_PRELOAD): every call that names a file below the
// folder TESSAROK_STALL_UNDER does not answer before the file TESSAROK_STALL_UNTIL is there. So a
// disk behaves that has to wake up, or a server that holds the home folders. A byte is added to
// the file TESSAROK_STALL_COUNT for every call that has begun to wait.

#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

char under[4096];
char until[4096];
char count[4096];

void keep(const char* name, char (&value)[4096]) {
  if (const char* given = std::getenv(name)) std::strncpy(value, given, sizeof value - 1);
}

__attribute__((constructor)) void readEnvironment() {
  keep("TESSAROK_STALL_UNDER", under);
  keep("TESSAROK_STALL_UNTIL", until);
  keep("TESSAROK_STALL_COUNT", count);
  // Programs that the program starts run undisturbed.
  ::unsetenv("LD_PRELOAD");
}

bool isThere(const char* file) {
  return ::syscall(SYS_faccessat, AT_FDCWD, file, F_OK) == 0;
}

void stall(const char* path) {
  if (path == nullptr || *under == 0 || std::strncmp(path, under, std::strlen(under)) != 0) return;
  if (isThere(until)) return;
  const auto file = ::syscall(SYS_openat, AT_FDCWD, count, O_WRONLY | O_APPEND | O_CREAT, 0600);
  static_cast<void>(!::syscall(SYS_write, file, ".", 1));
  ::syscall(SYS_close, file);
  while (!isThere(until))
    ::usleep(5000);
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

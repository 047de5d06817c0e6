// The calls of the system that the program makes on the virtual desktop and in a terminal. A read
// or write with error number 0 does only half of its work. See FaultLibrary.h.

#include <poll.h>
#include <pthread.h>
#include <pty.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include "tests/fault/FaultLibrary.h"

using tessarok::faults::failingError;
using tessarok::faults::fails;
using tessarok::faults::real;

// NOLINTBEGIN: the names and types are the C library's.
/// One whose command says whether there is an argument.
#define FAILING_CONTROL(name, Command)                                  \
  int name(int file, Command command, ...) {                            \
    static const auto next = real<int (*)(int, Command, void*)>(#name); \
    va_list list;                                                       \
    va_start(list, command);                                            \
    void* argument = va_arg(list, void*);                               \
    va_end(list);                                                       \
    return fails(#name) ? -1 : next(file, command, argument);           \
  }

extern "C" {

FAILING_OPEN(open)
FAILING_OPEN(open64)
int __open_2(const char* path, int flags) {
  static const auto next = real<int (*)(const char*, int)>("__open_2");
  return fails("open") ? -1 : next(path, flags);
}
int openat(int folder, const char* path, int flags, ...) {
  static const auto next = real<int (*)(int, const char*, int, ...)>("openat");
  va_list list;
  va_start(list, flags);
  const auto mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(list, mode_t) : 0;
  va_end(list);
  return fails("open") ? -1 : next(folder, path, flags, mode);
}
FAILING(int, mkostemp, -1, (char* name, int flags), (name, flags))
FAILING(FILE*, fopen, nullptr, (const char* path, const char* mode), (path, mode))
FAILING_AS("fopen", FILE*, fopen64, nullptr, (const char* path, const char* mode), (path, mode))
ssize_t read(int file, void* to, size_t size) {
  REAL(read);
  if (!fails("read")) return next(file, to, size);
  return failingError == 0 ? next(file, to, (size + 1) / 2) : -1;
}
ssize_t __read_chk(int file, void* to, size_t size, size_t) {
  return read(file, to, size);
}
ssize_t write(int file, const void* from, size_t size) {
  REAL(write);
  if (!fails("write")) return next(file, from, size);
  return failingError == 0 ? next(file, from, (size + 1) / 2) : -1;
}
FAILING(int, fsync, -1, (int file), (file))
FAILING(int, fchmod, -1, (int file, mode_t mode) noexcept, (file, mode))
FAILING(int, rename, -1, (const char* from, const char* to) noexcept, (from, to))
FAILING(int, unlink, -1, (const char* path) noexcept, (path))
FAILING(int, mkdir, -1, (const char* path, mode_t mode) noexcept, (path, mode))
FAILING(int, ftruncate, -1, (int file, off_t size) noexcept, (file, size))
FAILING(off_t, lseek, -1, (int file, off_t offset, int whence) noexcept, (file, offset, whence))
FAILING_CONTROL(fcntl, int)
FAILING(int, flock, -1, (int file, int operation) noexcept, (file, operation))
FAILING(void*, mmap, MAP_FAILED,
        (void* at, size_t size, int protection, int flags, int file, off_t offset) noexcept,
        (at, size, protection, flags, file, offset))
FAILING(int, stat, -1, (const char* path, struct stat* to) noexcept, (path, to))
FAILING_AS("stat", int, lstat, -1, (const char* path, struct stat* to) noexcept, (path, to))
FAILING(int, fstat, -1, (int file, struct stat* to) noexcept, (file, to))
FAILING(int, access, -1, (const char* path, int mode) noexcept, (path, mode))
int close(int file) {
  REAL(close);
  // The kernel closes the file whatever it reports.
  if (!fails("close")) return next(file);
  const int error = errno;
  next(file);
  errno = error;
  return -1;
}
FAILING(int, poll, -1, (pollfd * files, nfds_t count, int milliseconds),
        (files, count, milliseconds))
int __poll_chk(pollfd* files, nfds_t count, int milliseconds, size_t) {
  return poll(files, count, milliseconds);
}
FAILING(int, pipe2, -1, (int ends[2], int flags) noexcept, (ends, flags))
FAILING(int, forkpty, -1,
        (int* master, char* name, const termios* settings, const winsize* size) noexcept,
        (master, name, settings, size))
// This one answers with the number itself.
FAILING(int, pthread_create, failingError,
        (pthread_t * thread, const pthread_attr_t* attributes, void* (*start)(void*),
         void* argument) noexcept,
        (thread, attributes, start, argument))
FAILING(int, tcgetattr, -1, (int file, termios* settings) noexcept, (file, settings))
FAILING(int, tcsetattr, -1, (int file, int when, const termios* settings) noexcept,
        (file, when, settings))
FAILING_CONTROL(ioctl, unsigned long)

}  // extern "C"
// NOLINTEND

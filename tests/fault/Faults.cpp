// A library to be loaded before a program (LD_PRELOAD): it counts the program's calls of the
// system and makes one of them fail.
//
//   TESSAROK_FAULT=write:3:28         the third write fails with error number 28; a read or write
//                                     with error number 0 does only half of its work
//   TESSAROK_FAULT_COUNTS=FILE        at the end, how often each was called goes into FILE
//
// Both are taken out of the environment, as is LD_PRELOAD: programs that the program starts run
// undisturbed.

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
#include <pty.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace {

enum Call {
  kOpen,
  kMkostemp,
  kFopen,
  kRead,
  kWrite,
  kFsync,
  kFchmod,
  kRename,
  kUnlink,
  kMkdir,
  kFtruncate,
  kLseek,
  kFcntl,
  kFlock,
  kMmap,
  kStat,
  kFstat,
  kAccess,
  kClose,
  kPoll,
  kPipe,
  kForkpty,
  kThread,
  kTcgetattr,
  kTcsetattr,
  kIoctl,
  kCalls
};

constexpr std::array<const char*, kCalls> kNames = {
    "open",    "mkostemp", "fopen",     "read",      "write", "fsync", "fchmod",
    "rename",  "unlink",   "mkdir",     "ftruncate", "lseek", "fcntl", "flock",
    "mmap",    "stat",     "fstat",     "access",    "close", "poll",  "pipe",
    "forkpty", "thread",   "tcgetattr", "tcsetattr", "ioctl"};

std::array<std::atomic<int>, kCalls> counts;
int failingCall = -1;
int failingNumber = 0;
int failingError = 0;
char countsFile[4096];
bool isReady = false;

__attribute__((constructor)) void readEnvironment() {
  if (const char* fault = std::getenv("TESSAROK_FAULT")) {
    char name[32] = "";
    if (std::sscanf(fault, "%31[^:]:%d:%d", name, &failingNumber, &failingError) == 3) {
      for (int call = 0; call < kCalls; ++call) {
        if (std::strcmp(name, kNames[static_cast<std::size_t>(call)]) == 0) failingCall = call;
      }
    }
    if (failingCall < 0) std::abort();
  }
  if (const char* file = std::getenv("TESSAROK_FAULT_COUNTS")) {
    std::snprintf(countsFile, sizeof countsFile, "%s", file);
  }
  unsetenv("TESSAROK_FAULT");
  unsetenv("TESSAROK_FAULT_COUNTS");
  unsetenv("LD_PRELOAD");
  isReady = true;
}

__attribute__((destructor)) void writeCounts() {
  isReady = false;
  if (countsFile[0] == '\0') return;
  if (auto* file = std::fopen(countsFile, "w")) {
    for (int call = 0; call < kCalls; ++call) {
      const auto index = static_cast<std::size_t>(call);
      std::fprintf(file, "%s %d\n", kNames[index], counts[index].load());
    }
    std::fclose(file);
  }
}

/// Whether this call is the one that fails; errno is set then.
bool fails(Call call) {
  if (!isReady) return false;
  const int number = ++counts[static_cast<std::size_t>(call)];
  if (call != failingCall || number != failingNumber) return false;
  errno = failingError;
  return true;
}

template <typename Function>
Function real(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// NOLINTBEGIN: the names and types are the C library's.
#define REAL(name) static const auto next = real<decltype(&::name)>(#name)

extern "C" {

int open(const char* path, int flags, ...) {
  static const auto next = real<int (*)(const char*, int, ...)>("open");
  va_list list;
  va_start(list, flags);
  const auto mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(list, mode_t) : 0;
  va_end(list);
  return fails(kOpen) ? -1 : next(path, flags, mode);
}
int open64(const char* path, int flags, ...) {
  static const auto next = real<int (*)(const char*, int, ...)>("open64");
  va_list list;
  va_start(list, flags);
  const auto mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(list, mode_t) : 0;
  va_end(list);
  return fails(kOpen) ? -1 : next(path, flags, mode);
}
int __open_2(const char* path, int flags) {
  static const auto next = real<int (*)(const char*, int)>("__open_2");
  return fails(kOpen) ? -1 : next(path, flags);
}
int openat(int folder, const char* path, int flags, ...) {
  static const auto next = real<int (*)(int, const char*, int, ...)>("openat");
  va_list list;
  va_start(list, flags);
  const auto mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(list, mode_t) : 0;
  va_end(list);
  return fails(kOpen) ? -1 : next(folder, path, flags, mode);
}
int mkostemp(char* name, int flags) {
  REAL(mkostemp);
  return fails(kMkostemp) ? -1 : next(name, flags);
}
FILE* fopen(const char* path, const char* mode) {
  static const auto next = real<FILE* (*)(const char*, const char*)>("fopen");
  return fails(kFopen) ? nullptr : next(path, mode);
}
FILE* fopen64(const char* path, const char* mode) {
  static const auto next = real<FILE* (*)(const char*, const char*)>("fopen64");
  return fails(kFopen) ? nullptr : next(path, mode);
}
ssize_t read(int file, void* to, size_t size) {
  REAL(read);
  if (!fails(kRead)) return next(file, to, size);
  return failingError == 0 ? next(file, to, (size + 1) / 2) : -1;
}
ssize_t __read_chk(int file, void* to, size_t size, size_t) {
  return read(file, to, size);
}
ssize_t write(int file, const void* from, size_t size) {
  REAL(write);
  if (!fails(kWrite)) return next(file, from, size);
  return failingError == 0 ? next(file, from, (size + 1) / 2) : -1;
}
int fsync(int file) {
  REAL(fsync);
  return fails(kFsync) ? -1 : next(file);
}
int fchmod(int file, mode_t mode) {
  REAL(fchmod);
  return fails(kFchmod) ? -1 : next(file, mode);
}
int rename(const char* from, const char* to) {
  REAL(rename);
  return fails(kRename) ? -1 : next(from, to);
}
int unlink(const char* path) {
  REAL(unlink);
  return fails(kUnlink) ? -1 : next(path);
}
int mkdir(const char* path, mode_t mode) {
  REAL(mkdir);
  return fails(kMkdir) ? -1 : next(path, mode);
}
int ftruncate(int file, off_t size) {
  REAL(ftruncate);
  return fails(kFtruncate) ? -1 : next(file, size);
}
off_t lseek(int file, off_t offset, int whence) {
  REAL(lseek);
  return fails(kLseek) ? -1 : next(file, offset, whence);
}
int fcntl(int file, int command, ...) {
  static const auto next = real<int (*)(int, int, ...)>("fcntl");
  va_list list;
  va_start(list, command);
  void* argument = va_arg(list, void*);
  va_end(list);
  return fails(kFcntl) ? -1 : next(file, command, argument);
}
int flock(int file, int operation) {
  static const auto next = real<int (*)(int, int)>("flock");
  return fails(kFlock) ? -1 : next(file, operation);
}
void* mmap(void* at, size_t size, int protection, int flags, int file, off_t offset) {
  REAL(mmap);
  return fails(kMmap) ? MAP_FAILED : next(at, size, protection, flags, file, offset);
}
int stat(const char* path, struct stat* to) {
  static const auto next = real<int (*)(const char*, struct stat*)>("stat");
  return fails(kStat) ? -1 : next(path, to);
}
int lstat(const char* path, struct stat* to) {
  static const auto next = real<int (*)(const char*, struct stat*)>("lstat");
  return fails(kStat) ? -1 : next(path, to);
}
int fstat(int file, struct stat* to) {
  static const auto next = real<int (*)(int, struct stat*)>("fstat");
  return fails(kFstat) ? -1 : next(file, to);
}
int access(const char* path, int mode) {
  REAL(access);
  return fails(kAccess) ? -1 : next(path, mode);
}
int close(int file) {
  REAL(close);
  // The kernel closes the file whatever it reports.
  if (!fails(kClose)) return next(file);
  const int error = errno;
  next(file);
  errno = error;
  return -1;
}
int poll(struct pollfd* files, nfds_t count, int milliseconds) {
  REAL(poll);
  return fails(kPoll) ? -1 : next(files, count, milliseconds);
}
int __poll_chk(struct pollfd* files, nfds_t count, int milliseconds, size_t) {
  return poll(files, count, milliseconds);
}
int pipe2(int ends[2], int flags) {
  REAL(pipe2);
  return fails(kPipe) ? -1 : next(ends, flags);
}
int forkpty(int* master, char* name, const struct termios* settings, const struct winsize* size) {
  REAL(forkpty);
  return fails(kForkpty) ? -1 : next(master, name, settings, size);
}
int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                   void* argument) {
  REAL(pthread_create);
  // This one answers with the number itself.
  return fails(kThread) ? failingError : next(thread, attributes, start, argument);
}
int tcgetattr(int file, struct termios* settings) {
  REAL(tcgetattr);
  return fails(kTcgetattr) ? -1 : next(file, settings);
}
int tcsetattr(int file, int when, const struct termios* settings) {
  REAL(tcsetattr);
  return fails(kTcsetattr) ? -1 : next(file, when, settings);
}
int ioctl(int file, unsigned long request, ...) {
  static const auto next = real<int (*)(int, unsigned long, ...)>("ioctl");
  va_list list;
  va_start(list, request);
  void* argument = va_arg(list, void*);
  va_end(list);
  return fails(kIoctl) ? -1 : next(file, request, argument);
}

}  // extern "C"
// NOLINTEND

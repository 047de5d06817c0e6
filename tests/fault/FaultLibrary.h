#pragma once

// What the libraries have in common that are loaded before a program (LD_PRELOAD), count its calls
// and make one of them fail.
//
//   TESSAROK_FAULT=write:3:28             the third write fails with error number 28
//   TESSAROK_FAULT=write:3:28:worker      the same in the first process that the program has forked
//   TESSAROK_FAULT=write:3:28:releaser    in the second, and releaser2 in the third
//   TESSAROK_FAULT_COUNTS=FILE            at the end, how often each was called goes into FILE, for
//                                         the worker into FILE.worker
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
#include <string>

namespace tessarok::faults {

struct Counter {
  std::atomic<const char*> call = nullptr;
  std::atomic<int> count = 0;
};

// In the order in which they were first called.
inline std::array<Counter, 128> counters;

inline char failingCall[64];
inline int failingNumber = 0;
inline int failingError = 0;
inline char failingProcess[16];
inline char countsFile[4096];
/// Empty for the process that was started.
inline const char* process = "";
inline bool isReady = false;

/// Reads the environment when the library is loaded, and writes the counts when the process ends.
class Task final {
 public:
  Task() {
    if (const char* fault = std::getenv("TESSAROK_FAULT")) {
      if (std::sscanf(fault, "%63[^:]:%d:%d:%15s", failingCall, &failingNumber, &failingError,
                      failingProcess) < 3) {
        std::abort();
      }
    }
    if (const char* file = std::getenv("TESSAROK_FAULT_COUNTS")) {
      std::snprintf(countsFile, sizeof countsFile, "%s", file);
    }
    unsetenv("TESSAROK_FAULT");
    unsetenv("TESSAROK_FAULT_COUNTS");
    unsetenv("LD_PRELOAD");
    isReady = true;
  }
  Task(const Task&) = delete;
  Task& operator=(const Task&) = delete;
  ~Task() {
    isReady = false;
    if (countsFile[0] == '\0') return;
    const auto name = std::string(countsFile) + (*process == '\0' ? "" : ".") + process;
    auto* file = std::fopen(name.c_str(), "w");
    if (file == nullptr) return;
    for (const auto& counter : counters) {
      if (counter.call != nullptr)
        std::fprintf(file, "%s %d\n", counter.call.load(), counter.count.load());
    }
    std::fclose(file);
  }
};

inline const Task task;

/// To be called in a process that was forked.
inline void become(const char* name) {
  process = name;
  for (auto& counter : counters)
    counter.count = 0;
}

inline Counter& counterOf(const char* call) {
  for (auto& counter : counters) {
    const char* other = nullptr;
    if (counter.call.compare_exchange_strong(other, call)) return counter;
    if (std::strcmp(other, call) == 0) return counter;
  }
  std::abort();
}

/// Whether this call is the one that fails; errno is set then.
inline bool fails(const char* call) {
  if (!isReady) return false;
  const int number = ++counterOf(call).count;
  if (number != failingNumber || std::strcmp(call, failingCall) != 0) return false;
  if (std::strcmp(process, failingProcess) != 0) return false;
  errno = failingError;
  return true;
}

/// The function that the program would have called.
template <typename Function>
Function real(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace tessarok::faults

// NOLINTBEGIN: the names and types are those of the libraries.
#define REAL(name) static const auto next = tessarok::faults::real<decltype(&::name)>(#name)
/// A function that counts as `call`, and answers `failure` when it fails.
#define FAILING_AS(call, result, name, failure, arguments, values) \
  result name arguments {                                          \
    REAL(name);                                                    \
    if (tessarok::faults::fails(call)) return failure;             \
    return next values;                                            \
  }
#define FAILING(result, name, failure, arguments, values) \
  FAILING_AS(#name, result, name, failure, arguments, values)

/// open, under one of its names.
#define FAILING_OPEN(name)                                                                  \
  int name(const char* path, int flags, ...) {                                              \
    static const auto next = tessarok::faults::real<int (*)(const char*, int, ...)>(#name); \
    va_list list;                                                                           \
    va_start(list, flags);                                                                  \
    const auto mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(list, mode_t) : 0;      \
    va_end(list);                                                                           \
    return tessarok::faults::fails("open") ? -1 : next(path, flags, mode);                  \
  }
// NOLINTEND

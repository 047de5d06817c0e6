#include "desktops/posix/PersonsEnvironment.h"

#include <cstdlib>
#include <unistd.h>
#ifdef __linux__
#include <sys/auxv.h>
#endif

namespace tessarok::posix {

namespace {

bool hasMoreRights() {
#ifdef __linux__
  return ::getauxval(AT_SECURE) != 0;
#else
  return ::issetugid() != 0;
#endif
}

}  // namespace

std::optional<std::string> personsVariable(const char* name) {
  static const bool isIgnored = hasMoreRights();
  const char* value = isIgnored ? nullptr : std::getenv(name);
  if (value == nullptr) return std::nullopt;
  return value;
}

}  // namespace tessarok::posix

#include "platform/posix/ProcessApplication.h"

#include <optional>
#include <unistd.h>

namespace tessarok::posix {

platform::RunningApplication ProcessApplication::self() {
  return {.processIdentifier = ::getpid(), .launchDate = std::nullopt};
}

}  // namespace tessarok::posix

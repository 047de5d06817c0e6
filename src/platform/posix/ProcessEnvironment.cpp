#include "platform/posix/ProcessEnvironment.h"

#include <cstdlib>

namespace tessarok::posix {

std::optional<std::string> ProcessEnvironment::variable(std::string_view name) {
  const char* value = std::getenv(std::string(name).c_str());
  if (value == nullptr) return std::nullopt;
  return value;
}

}  // namespace tessarok::posix

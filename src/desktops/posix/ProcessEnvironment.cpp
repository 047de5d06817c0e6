#include "desktops/posix/ProcessEnvironment.h"

#include "desktops/posix/PersonsEnvironment.h"

namespace tessarok::posix {

std::optional<std::string> ProcessEnvironment::variable(std::string_view name) {
  return personsVariable(std::string(name).c_str());
}

}  // namespace tessarok::posix

#include "desktops/posix/StandardErrorLog.h"

#include <cstdio>
#include <string>

#include "desktops/posix/WriteSignals.h"

namespace tessarok::posix {

void StandardErrorLog::write(std::string_view message) {
  const WriteSignalsBlocked errorsInstead;
  // One call, so that lines of several threads do not mix.
  const auto line = std::string(message) + "\n";
  std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace tessarok::posix

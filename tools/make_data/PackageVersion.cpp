#include "PackageVersion.h"

#include <system_error>

#include "Program.h"

namespace tessarok::makedata {

std::optional<std::string> packageVersion(const std::string& package) {
  try {
    const ProgramResult result = runProgram({"dpkg-query", "-W", "-f", "${Version}", package}, "");
    if (result.status != 0 || result.output.empty()) return std::nullopt;
    return result.output;
  } catch (const std::system_error&) {
    return std::nullopt;
  }
}

}  // namespace tessarok::makedata

#include "AspellArchive.h"

#include <system_error>
#include <vector>

#include "InputError.h"
#include "Program.h"

namespace tessarok::makedata {

namespace {

std::string filter(const std::vector<std::string>& command, const std::string& input,
                   const std::filesystem::path& file) {
  ProgramResult result;
  try {
    result = runProgram(command, input);
  } catch (const std::system_error& error) {
    throw InputError(file, 0, "cannot run " + command.front() + ": " + error.code().message());
  }
  if (result.status != 0) {
    throw InputError(
        file, 0,
        command.front() + " cannot unpack it (exit status " + std::to_string(result.status) + ")");
  }
  return std::move(result.output);
}

}  // namespace

std::string unpackAspellList(const std::string& packed, const std::filesystem::path& file) {
  const std::string list = filter({"gzip", "-dc"}, packed, file);
  return filter({"prezip-bin", "-d"}, list, file);
}

}  // namespace tessarok::makedata

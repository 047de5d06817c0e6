#include "commands/CheckDataCommand.h"

#include <iostream>
#include <system_error>

#include "commands/CommandError.h"
#include "commands/WordData.h"
#include "desktops/posix/Translation.h"
#include "desktops/terminal/TerminalDesktop.h"
#include "platform/Desktop.h"

namespace tessarok::commands {

namespace {

void print(const std::string& file, const DataFault& fault) {
  std::cerr << file;
  if (fault.line > 0) std::cerr << ":" << fault.line;
  std::cerr << ": " << fault.reason << '\n';
}

}  // namespace

int runCheckData(const Options& options, const std::optional<std::filesystem::path>& directory) {
  std::error_code error;
  if (directory && !std::filesystem::is_directory(*directory, error)) {
    throw CommandError(
        posix::translated("{1} is not an existing directory", {directory->string()}));
  }
  terminal::TerminalDesktop desktop(directory ? directory : options.resources);
  platform::setDesktop(desktop);
  bool isAllGood = true;
  for (const auto& [file, fault] : checkWordData()) {
    if (fault) {
      print(file, *fault);
      isAllGood = false;
    } else {
      std::cout << file << ": good\n";
    }
  }
  return isAllGood ? 0 : 2;
}

}  // namespace tessarok::commands

#include "commands/ReplayCommand.h"

#include <fstream>
#include <iostream>
#include <system_error>

#include "commands/CommandError.h"
#include "commands/Input.h"
#include "desktops/posix/Translation.h"
#include "desktops/virtual/Replay.h"
#include "desktops/virtual/ReplayError.h"

namespace tessarok::commands {

namespace {

void requireDirectory(const std::filesystem::path& directory) {
  std::error_code error;
  if (!std::filesystem::is_directory(directory, error)) {
    throw CommandError(posix::translated("{1} is not an existing directory", {directory.string()}));
  }
}

}  // namespace

int runReplay(const Options& options, const ReplayOptions& replay) {
  if (replay.home) requireDirectory(*replay.home);
  std::ifstream file;
  if (replay.file) {
    std::error_code error;
    if (!std::filesystem::is_directory(*replay.file, error)) file.open(*replay.file);
    if (!file.is_open()) {
      throw CommandError(posix::translated("cannot read {1}", {replay.file->string()}));
    }
  }
  auto& script = replay.file ? static_cast<std::istream&>(file) : std::cin;
  virtualdesktop::Replay run(replay.home, options.resources);
  try {
    run.run(script, std::cout);
  } catch (const virtualdesktop::ReplayError& error) {
    std::cout.flush();
    std::cerr << "replay: " << error.what() << '\n';
    return 2;
  }
  requireFullyRead(script,
                   replay.file ? replay.file->string() : posix::translated("standard input"));
  return 0;
}

}  // namespace tessarok::commands

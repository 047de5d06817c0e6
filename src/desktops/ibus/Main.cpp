// The program that IBus runs: tessarok-ibus [--ibus] [--resources DIR]

#include <exception>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string_view>

#include "desktops/ibus/IbusService.h"
#include "desktops/posix/Translation.h"

namespace {

using tessarok::ibus::IbusService;
using tessarok::posix::translated;

constexpr int kUsageError = 2;

int usageError(const std::string& message) {
  std::cerr << "tessarok-ibus: " << message << '\n';
  return kUsageError;
}

void printHelp() {
  std::cout << "tessarok-ibus [--ibus] [--resources DIR]\n"
            << translated(
                   "Corrects in the text fields that IBus serves. IBus starts it when one "
                   "of its input sources is chosen.")
            << "\n  --ibus           "
            << translated("the daemon has read the component file of the engines")
            << "\n  --resources DIR  " << translated("the directory of the data files") << '\n';
}

}  // namespace

int main(int argc, char** argv) {
  tessarok::posix::useLanguageOfLocale();
  auto registration = IbusService::Registration::now;
  std::optional<std::filesystem::path> resources;
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument == "--ibus") {
      registration = IbusService::Registration::componentFile;
    } else if (argument == "--resources" && i + 1 < argc) {
      resources = argv[++i];
    } else if (argument == "--version") {
      std::cout << "tessarok-ibus " TESSAROK_VERSION "\n";
      return 0;
    } else if (argument == "--help") {
      printHelp();
      return 0;
    } else {
      return usageError(translated("wrong argument: {1}", {std::string(argument)}));
    }
  }
  try {
    return IbusService(resources).run(registration);
  } catch (const std::exception& error) {
    return usageError(error.what());
  }
}

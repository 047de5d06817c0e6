#include "tests/desktops/x11/ProcessState.h"

#include <filesystem>
#include <fstream>
#include <string>

namespace tessarok::testing {

namespace {

std::string folderOf(pid_t process) {
  return "/proc/" + std::to_string(process);
}

}  // namespace

char stateOf(pid_t process) {
  std::ifstream file(folderOf(process) + "/stat");
  std::string line;
  std::getline(file, line);
  const auto end = line.rfind(')');
  return end == std::string::npos || end + 2 >= line.size() ? 'Z' : line[end + 2];
}

long waitsOf(pid_t process) {
  long waits = 0;
  for (const auto& task : std::filesystem::directory_iterator(folderOf(process) + "/task")) {
    std::ifstream file(task.path() / "status");
    for (std::string name; file >> name;) {
      long number = 0;
      if (name == "voluntary_ctxt_switches:" && file >> number) waits += number;
    }
  }
  return waits;
}

double processorTimeOf(pid_t process) {
  long nanoseconds = 0;
  std::ifstream(folderOf(process) + "/schedstat") >> nanoseconds;
  return static_cast<double>(nanoseconds) / 1e9;
}

}  // namespace tessarok::testing

#include "desktops/posix/Processes.h"

#include <fstream>
#include <sstream>
#include <system_error>
#include <unistd.h>

namespace tessarok::posix {

namespace {

namespace fs = std::filesystem;

fs::path folderOf(pid_t process) {
  return fs::path("/proc") / std::to_string(process);
}

}  // namespace

std::optional<fs::path> programFileOf(pid_t process) {
  std::error_code error;
  auto file = fs::read_symlink(folderOf(process) / "exe", error);
  if (error) return std::nullopt;
  return file;
}

std::string programNameOf(pid_t process) {
  std::ifstream file(folderOf(process) / "comm");
  std::string name;
  std::getline(file, name);
  return name;
}

std::optional<double> launchDateOf(pid_t process) {
  std::ifstream file(folderOf(process) / "stat");
  std::string line;
  if (!std::getline(file, line)) return std::nullopt;
  // The name, in brackets, may hold anything.
  const auto end = line.rfind(')');
  if (end == std::string::npos) return std::nullopt;
  std::istringstream fields(line.substr(end + 1));
  // The third field comes next; the twenty-second is the start, from the start of the system.
  constexpr int kFieldsBefore = 19;
  std::string skipped;
  for (int i = 0; i < kFieldsBefore; ++i)
    fields >> skipped;
  double ticks = 0;
  if (!(fields >> ticks)) return std::nullopt;
  return ticks / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

}  // namespace tessarok::posix

#include "desktops/x11/ThreadTimes.h"

#include <fstream>
#include <string>

namespace tessarok::x11 {

namespace {

/// How many times as long everything takes at least where the compiler has built checks of threads
/// in. Else whoever does his work would count as one that is busy with nothing.
#ifdef __SANITIZE_THREAD__
constexpr long long kSlowness = 5;
#else
constexpr long long kSlowness = 1;
#endif

}  // namespace

std::optional<ThreadTimes> ThreadTimes::ofMainThread(pid_t process) {
  const auto folder = "/proc/" + std::to_string(process);
  ThreadTimes times;
  // A system that does not count says zero.
  std::ifstream counts(folder + "/schedstat");
  if (!(counts >> times.ran >> times.queued) || times.ran == 0) return std::nullopt;
  times.ran /= kSlowness;
  std::ifstream state(folder + "/stat");
  std::string line;
  std::getline(state, line);
  // The name, in brackets, may hold anything.
  const auto name = line.rfind(") ");
  if (name == std::string::npos) return std::nullopt;
  times.isAsleep = line[name + 2] == 'S';
  return times;
}

}  // namespace tessarok::x11

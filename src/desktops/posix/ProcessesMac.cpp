#include <array>
#include <libproc.h>
#include <string_view>

#include "desktops/posix/Processes.h"

namespace tessarok::posix {

namespace {

/// Absent when there is no such process, or none that this one may ask about.
template <typename Information>
std::optional<Information> informationOf(pid_t process, int kind) {
  Information information{};
  const int size = ::proc_pidinfo(process, kind, 0, &information, sizeof information);
  if (size != static_cast<int>(sizeof information)) return std::nullopt;
  return information;
}

}  // namespace

std::optional<std::filesystem::path> programFileOf(pid_t process) {
  std::array<char, PROC_PIDPATHINFO_MAXSIZE> path{};
  const int size = ::proc_pidpath(process, path.data(), path.size());
  if (size <= 0) return std::nullopt;
  return std::string_view(path.data(), static_cast<std::size_t>(size));
}

std::string programNameOf(pid_t process) {
  // The short form is the one that may be asked for of sudo, which is the administrator's.
  const auto found = informationOf<proc_bsdshortinfo>(process, PROC_PIDT_SHORTBSDINFO);
  if (!found) return {};
  const std::string_view name(found->pbsi_comm, sizeof found->pbsi_comm);
  return std::string(name.substr(0, name.find('\0')));
}

std::optional<double> launchDateOf(pid_t process) {
  constexpr double kMicroseconds = 1e6;
  const auto found = informationOf<proc_bsdinfo>(process, PROC_PIDTBSDINFO);
  if (!found) return std::nullopt;
  return static_cast<double>(found->pbi_start_tvsec) +
         static_cast<double>(found->pbi_start_tvusec) / kMicroseconds;
}

}  // namespace tessarok::posix

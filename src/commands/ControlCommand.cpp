#include "commands/ControlCommand.h"

#include <iostream>
#include <optional>

#include "commands/TerminalControl.h"
#include "desktops/posix/Translation.h"

namespace tessarok::commands {

namespace {

using posix::translated;

constexpr int kNoAnswer = 1;

/// Absent for what only a terminal understands.
std::optional<DesktopRequest> desktopRequest(const std::string& request) {
  if (request == "on") return DesktopRequest::on;
  if (request == "off") return DesktopRequest::off;
  if (request == "pause") return DesktopRequest::pause;
  return std::nullopt;
}

}  // namespace

std::string correctionOf(const DesktopStatus& status) {
  const auto correction = translated(status.correction);
  if (status.isEnabled || status.correction == "off") return correction;
  return translated("off") + ", " + correction;
}

int runControl(const std::string& request) {
  if (const auto terminal = askTerminal(request)) {
    std::cout << describe(*terminal) << '\n';
    return 0;
  }
  const auto asked = desktopRequest(request);
  if (asked && tellDesktop(*asked)) {
    if (const auto status = askDesktop())
      std::cout << translated("{1}: correction {2}", {status->desktop, correctionOf(*status)})
                << '\n';
    return 0;
  }
  const auto unreachable = asked ? unreachableDesktop() : std::nullopt;
  std::cerr << "tessarok: "
            << (unreachable ? *unreachable
                : asked ? translated("neither a corrected terminal nor a running desktop answers")
                        : translated("no corrected terminal answers"))
            << '\n';
  return kNoAnswer;
}

int runQuit() {
  if (tellDesktop(DesktopRequest::quit)) return 0;
  std::cerr << "tessarok: "
            << unreachableDesktop().value_or(translated("it does not run on this desktop")) << '\n';
  return kNoAnswer;
}

}  // namespace tessarok::commands

#include "tests/desktops/x11/ChromiumCommand.h"

#include <unistd.h>

namespace tessarok::testing {

std::vector<std::string> chromiumCommand(const std::filesystem::path& page,
                                         const std::vector<std::string>& options) {
  std::vector<std::string> command{"chromium",
                                   "--user-data-dir=" + (page.parent_path() / "profile").string(),
                                   "--no-first-run",
                                   "--no-default-browser-check",
                                   "--password-store=basic",
                                   "--disable-gpu",
                                   "--disable-background-networking",
                                   "--ozone-platform=x11",
                                   "--app=file://" + page.string()};
  command.insert(command.end(), options.begin(), options.end());
  // It does not shield root from its pages.
  if (::geteuid() == 0) command.emplace_back("--no-sandbox");
  return command;
}

}  // namespace tessarok::testing

#include "tests/desktops/x11/LargeApplications.h"

#include <stdexcept>

#include "tests/desktops/x11/ChromiumCommand.h"
#include "tests/desktops/x11/Patience.h"

namespace tessarok::testing {

QtEntry::QtEntry(XServer& server) : Application(server) {
  start({TESSAROK_QT_ENTRY, file().string()}, "python3-pyqt5");
}

Chromium::Chromium(XServer& server) : Application(server) {
  const auto page = folder() / "page.html";
  page_ = std::make_unique<Subprocess>(
      std::vector<std::string>{TESSAROK_BROWSER_PAGE, folder().string()}, "python3",
      Subprocess::Setup{});
  if (!waitUntil([&] { return std::filesystem::exists(page); })) {
    throw std::runtime_error("there is no page to show");
  }
  start(chromiumCommand(page), "chromium");
  // Its window takes the focus at once, but its page is a process of its own: until that has told
  // the window which entry has the focus, the window drops all keys.
  waitForKeys();
}

}  // namespace tessarok::testing

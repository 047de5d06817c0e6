// The program's icon and menu in a real panel, for looking at: the real menu and icon logic on a
// keyboard that is only memory. Runs until "Quit Tessarok" is chosen.
//
// usage: tessarok_panel_program [on|off|paused|attention]

#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>

#include "app/AppDelegate.h"
#include "tests/desktops/freedesktop/BusDesktop.h"
#include "typing/KeyCodes.h"
#include "typing/KeyTap.h"

namespace {

using tessarok::testing::BusDesktop;

/// False for a state that there is not.
bool show(BusDesktop& desktop, const std::string& state) {
  if (state == "off") {
    tessarok::KeyTap::shared().enabled = false;
    // Any change of the layouts draws the icon again.
    desktop.base().selectInputSource("com.apple.keylayout.Russian");
  } else if (state == "paused") {
    desktop.base().keyDown({.code = tessarok::keyCodes::grave});
  } else if (state == "attention") {
    desktop.base().enableInputSources({"com.apple.keylayout.US"});
  } else {
    return state == "on";
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  BusDesktop desktop(address != nullptr ? address : "", {{}, TESSAROK_ICONS});
  const auto delegate = std::make_shared<tessarok::AppDelegate>();
  delegate->applicationDidFinishLaunching();
  if (!show(desktop, argc > 1 ? argv[1] : "on")) {
    std::cerr << "there is no such state\n";
    return 2;
  }
  auto& application = desktop.application();
  while (!application.terminationRequested) {
    static_cast<void>(desktop.runLoop().until([&] { return application.terminationRequested; }));
  }
  delegate->applicationWillTerminate();
}

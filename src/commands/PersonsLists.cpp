#include "commands/PersonsLists.h"

#include <filesystem>
#include <iostream>
#include <system_error>

#include "commands/PersonsFiles.h"
#include "commands/PersonsSwitches.h"
#include "desktops/posix/PosixFiles.h"
#include "desktops/posix/StandardErrorLog.h"
#include "desktops/posix/Translation.h"
#include "words/BuiltinPacks.h"
#include "words/UserDict.h"

namespace tessarok::commands {

namespace {

namespace fs = std::filesystem;

/// Copies, because what is typed may teach the program something.
void copyFile(platform::Files& files, const fs::path& from, const fs::path& to) {
  std::error_code error;
  if (const auto problem = problemWithList(files, from)) {
    std::cerr << "tessarok: " << *problem << '\n';
    return;
  }
  if (!fs::exists(from, error)) return;
  fs::copy_file(from, to, error);
  if (!error) return;
  std::cerr << "tessarok: "
            << posix::translated("cannot read {1}: {2}", {from.string(), error.message()}) << '\n';
}

void copyFiles(platform::Files& files) {
  const auto support = files.applicationSupportDirectory();
  if (!support) return;
  for (const auto* name : kListNames)
    copyFile(files, *support / "Tessarok" / name, UserDict::directory() / name);
}

void copySwitches(platform::Files& files, platform::UserDefaults& to) {
  posix::StandardErrorLog log;
  const auto switches = personsSwitches(files, log);
  for (const auto& pack : BuiltinPacks::all()) {
    const auto key = BuiltinPacks::defaultsKey(pack);
    if (const auto on = switches->boolean(key)) to.setBoolean(key, *on);
  }
}

void leaveEverythingOut(virtualdesktop::VirtualDesktop& desktop) {
  // Where there is no dictionary, one with examples is laid out.
  static_cast<void>(desktop.files().writeAtomically(UserDict::fileURL(), ""));
  for (const auto& pack : BuiltinPacks::all())
    desktop.userDefaults().setBoolean(BuiltinPacks::defaultsKey(pack), false);
}

}  // namespace

void copyLists(virtualdesktop::VirtualDesktop& desktop, Lists lists) {
  static_cast<void>(desktop.files().createDirectories(UserDict::directory()));
  if (lists == Lists::none) return leaveEverythingOut(desktop);
  const auto files = posix::PosixFiles::ofUser();
  copyFiles(*files);
  copySwitches(*files, desktop.userDefaults());
}

}  // namespace tessarok::commands

// The file of settings.

#include <string>

#include "Check.h"
#include "FuzzDesktop.h"
#include "Input.h"
#include "desktops/posix/SettingsFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tessarok;
  constexpr const char* kFile = "/settings.json";
  constexpr const char* kKeys[] = {"shiftLagFix", "pack.it", "pack.chat", "pack.gaming"};
  static fuzz::FuzzDesktop desktop;
  auto& files = desktop.files();
  auto& log = desktop.systemLog();
  const std::string text(fuzz::textOf(data, size));
  files.put(kFile, text);
  static_cast<void>(log.take());

  posix::SettingsFile settings(kFile, files, log);
  std::vector<std::optional<bool>> before;
  for (const auto* key : kKeys)
    before.push_back(settings.boolean(key));
  const auto manualKey = settings.string("manualKey");
  const auto fullScreen = settings.strings("fullScreen");
  const bool isRefused = !log.take().empty();
  settings.setBoolean("pack.gaming", true);
  settings.flush();
  fuzz::check(settings.boolean("pack.gaming") == true, "a change is in force at once");
  if (isRefused) {
    fuzz::check(files.text(kFile) == text, "a file that is not understood is never written");
    return 0;
  }
  posix::SettingsFile again(kFile, files, log);
  for (std::size_t i = 0; i + 1 < before.size(); ++i)
    fuzz::check(again.boolean(kKeys[i]) == before[i], "other settings are kept");
  fuzz::check(again.string("manualKey") == manualKey, "texts are kept");
  fuzz::check(again.strings("fullScreen") == fullScreen, "lists are kept");
  fuzz::check(again.boolean("pack.gaming") == true, "a change is saved");
  fuzz::check(log.take().empty(), "what is written can be read");
  return 0;
}

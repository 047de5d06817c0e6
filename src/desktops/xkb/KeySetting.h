#pragma once

#include <string>

#include "desktops/posix/SettingsFile.h"
#include "desktops/posix/Translation.h"
#include "platform/SystemLog.h"

namespace tessarok::xkb {

/// What the setting of a `ManualKey` or a `PauseKey` chooses: the default without the setting, and
/// for a value that it does not know, which `log` is told of. Main thread.
template <typename Key>
[[nodiscard]] Key keySetting(posix::SettingsFile& settings, platform::SystemLog& log) {
  const auto value = settings.string(Key::kSetting);
  if (!value) return {};
  if (const auto key = Key::named(*value)) return *key;
  log.write("Tessarok: " + posix::translated("the setting \"{1}\" is \"{2}\", which is none of {3}",
                                             {Key::kSetting, *value, Key::kValues}));
  return {};
}

}  // namespace tessarok::xkb

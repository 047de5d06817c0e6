#pragma once

#include <optional>
#include <set>
#include <string>

#include "platform/InputSources.h"

namespace tessarok::macos {

/// The text input sources of the person.
class MacInputSources final : public platform::InputSources {
 public:
  std::vector<std::shared_ptr<platform::InputSourceHandle>> enabledLayouts() override;
  const std::optional<std::string>& current() override;
  bool select(platform::InputSourceHandle& source) override;

 private:
  /// Only to keep the storage that identifiers are read into.
  std::optional<std::string> read_;
  /// Every identifier that was ever current: what was handed out stays as it was. They are as few
  /// as the layouts and input methods that the person uses.
  std::set<std::optional<std::string>> known_;
};

}  // namespace tessarok::macos

#pragma once

#include "platform/InputSources.h"

namespace tessarok::macos {

/// The text input sources of the person.
class MacInputSources final : public platform::InputSources {
 public:
  std::vector<std::shared_ptr<platform::InputSourceHandle>> enabledLayouts() override;
  const std::optional<std::string>& current() override;
  bool select(platform::InputSourceHandle& source) override;

 private:
  /// A member only to keep its storage.
  std::optional<std::string> current_;
};

}  // namespace tessarok::macos

#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/InputSourceHandle.h"

namespace tessarok::platform {

/// The keyboard layouts that the person has enabled. Main thread.
class InputSources {
 public:
  virtual ~InputSources() = default;
  /// The enabled, selectable keyboard layouts, in the desktop's order.
  [[nodiscard]] virtual std::vector<std::shared_ptr<InputSourceHandle>> enabledLayouts() = 0;
  /// The identifier of the current input source; absent when there is none or it has none.
  /// Called for every key, so the answer is handed out by reference: it holds until the next
  /// call.
  [[nodiscard]] virtual const std::optional<std::string>& current() = 0;
  /// Makes a layout current; whether the system accepted.
  [[nodiscard]] virtual bool select(InputSourceHandle& source) = 0;
};

}  // namespace tessarok::platform

#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "tests/desktops/macos/Mac.h"

namespace tessarok::macostest {

/// Describes the program on the fake Mac as replays describe it, field by field.
class StoryPrinter final {
 public:
  explicit StoryPrinter(Mac& mac) : mac_(mac) {}

  /// The value of a field of a "print" line; throws `std::runtime_error` for an unknown one.
  [[nodiscard]] nlohmann::json value(const std::string& field);

 private:
  Mac& mac_;
};

}  // namespace tessarok::macostest

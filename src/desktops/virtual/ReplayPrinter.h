#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "desktops/virtual/Session.h"

namespace tessarok::virtualdesktop {

/// Describes the state of a running session, field by field.
class ReplayPrinter {
 public:
  explicit ReplayPrinter(Session& session) : session_(session) {}

  /// The value of one field of a "print" line; throws `ReplayError` for an unknown name.
  [[nodiscard]] nlohmann::json value(const std::string& field);

 private:
  Session& session_;
};

}  // namespace tessarok::virtualdesktop

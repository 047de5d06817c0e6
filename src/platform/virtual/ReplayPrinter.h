#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "platform/virtual/Session.h"

namespace tessarok::virtualdesktop {

/// Describes the state of a running session, field by field.
class ReplayPrinter {
 public:
  explicit ReplayPrinter(Session& session) : session_(session) {}

  /// The value of one field of a "print" line; throws `ReplayError` for an unknown name.
  [[nodiscard]] nlohmann::json value(const std::string& field);

 private:
  [[nodiscard]] nlohmann::json tap();
  [[nodiscard]] nlohmann::json icon();
  [[nodiscard]] nlohmann::json menu();
  [[nodiscard]] nlohmann::json files();

  Session& session_;
};

}  // namespace tessarok::virtualdesktop

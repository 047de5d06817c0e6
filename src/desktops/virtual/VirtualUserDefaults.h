#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/UserDefaults.h"

namespace tessarok::virtualdesktop {

/// Keeps the switches in memory. Main thread.
class VirtualUserDefaults final : public platform::UserDefaults {
 public:
  std::optional<bool> boolean(std::string_view key) override {
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional(found->second);
  }
  void setBoolean(std::string_view key, bool value) override {
    values.insert_or_assign(std::string(key), value);
  }
  std::map<std::string, bool, std::less<>> values;
};

}  // namespace tessarok::virtualdesktop

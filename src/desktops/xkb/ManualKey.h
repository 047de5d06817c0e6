#pragma once

#include <optional>
#include <string_view>

namespace tessarok::xkb {

/// The keys that convert a word by hand.
struct ManualKey {
  /// The setting that chooses them.
  static constexpr const char* kSetting = "manualKey";
  static constexpr const char* kValues = "\"both\", \"alt-space\", \"pause\"";

  bool altSpace = true;
  bool pause = true;

  /// "both", "alt-space" or "pause"; absent for any other value.
  [[nodiscard]] static std::optional<ManualKey> named(std::string_view value) {
    if (value == "both") return ManualKey{};
    if (value == "alt-space") return ManualKey{true, false};
    if (value == "pause") return ManualKey{false, true};
    return std::nullopt;
  }
};

}  // namespace tessarok::xkb

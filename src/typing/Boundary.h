#pragma once

#include <optional>
#include <string_view>

#include "platform/Event.h"

namespace tessarok {

/// What ended a word.
struct Boundary {
  /// The Character; absent when the word ends without one.
  std::optional<std::string_view> character;
  /// The key held back to be posted again after a replacement; null when the Character is typed as
  /// text.
  platform::Event* actionEvent = nullptr;

  [[nodiscard]] bool endsLine() const { return character == "\n" || character == "\t"; }
  /// What a replacement types after the word.
  [[nodiscard]] std::string_view text() const {
    return actionEvent != nullptr ? std::string_view() : character.value_or(std::string_view());
  }
};

}  // namespace tessarok

#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace tessarok::measure {

/// What a person types for.
enum class Occasion { talk, letters, technical, code };

constexpr std::array kOccasions = {Occasion::talk, Occasion::letters, Occasion::technical,
                                   Occasion::code};

/// "talk", "letters", "technical" or "code".
[[nodiscard]] constexpr std::string_view nameOf(Occasion occasion) {
  switch (occasion) {
    case Occasion::talk:
      return "talk";
    case Occasion::letters:
      return "letters";
    case Occasion::technical:
      return "technical";
    case Occasion::code:
      break;
  }
  return "code";
}

/// Absent for any other name.
[[nodiscard]] constexpr std::optional<Occasion> occasionNamed(std::string_view name) {
  for (const auto occasion : kOccasions) {
    if (nameOf(occasion) == name) return occasion;
  }
  return std::nullopt;
}

/// The part of a person's week that is typed for it: messages and posts, web pages and letters,
/// technical prose, programs and commands.
[[nodiscard]] constexpr double shareOf(Occasion occasion) {
  switch (occasion) {
    case Occasion::talk:
      return 0.60;
    case Occasion::letters:
      return 0.20;
    case Occasion::technical:
      return 0.15;
    case Occasion::code:
      break;
  }
  return 0.05;
}

}  // namespace tessarok::measure

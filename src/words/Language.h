#pragma once

namespace tessarok {

/// The two languages that a word can be of, and so the two layouts that it can be typed in.
enum class Language { english, russian };

[[nodiscard]] constexpr Language other(Language language) {
  return language == Language::english ? Language::russian : Language::english;
}

}  // namespace tessarok

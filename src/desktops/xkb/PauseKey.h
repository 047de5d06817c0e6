#pragma once

#include <optional>
#include <string_view>

#include "typing/KeyCodes.h"
#include "words/Language.h"

namespace tessarok::xkb {

/// Which key pauses the correction. The grave accent's key is that of ё in the Russian layout: who
/// writes Russian needs it as a letter.
class PauseKey {
 public:
  /// The setting that chooses it.
  static constexpr const char* kSetting = "pauseKey";
  static constexpr const char* kValues = "\"grave\", \"english-only\", \"section\", \"none\"";

  enum class Choice {
    /// The grave accent's key and the one beside the left Shift, in every layout.
    grave,
    /// The same two while the English layout is on.
    englishOnly,
    /// The key beside the left Shift, in every layout.
    section,
    none,
  };

  constexpr PauseKey() = default;
  constexpr explicit PauseKey(Choice choice) : choice_(choice) {}

  /// "grave", "english-only", "section" or "none"; absent for any other value.
  [[nodiscard]] static std::optional<PauseKey> named(std::string_view value) {
    if (value == "grave") return PauseKey(Choice::grave);
    if (value == "english-only") return PauseKey(Choice::englishOnly);
    if (value == "section") return PauseKey(Choice::section);
    if (value == "none") return PauseKey(Choice::none);
    return std::nullopt;
  }

  [[nodiscard]] constexpr Choice choice() const { return choice_; }

  /// Whether the key may pause at all: what `pauses` may say of another is of no use.
  [[nodiscard]] static constexpr bool isOne(KeyCode code) {
    return code == keyCodes::grave || code == keyCodes::isoSection;
  }
  /// Whether it pauses while a layout is on; absent for a layout of neither language.
  [[nodiscard]] constexpr bool pauses(KeyCode code, std::optional<Language> layout) const {
    switch (choice_) {
      case Choice::grave:
        return isOne(code);
      case Choice::englishOnly:
        return isOne(code) && layout == Language::english;
      case Choice::section:
        return code == keyCodes::isoSection;
      case Choice::none:
        break;
    }
    return false;
  }

 private:
  Choice choice_ = Choice::englishOnly;
};

}  // namespace tessarok::xkb

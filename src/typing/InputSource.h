#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/InputSourceHandle.h"
#include "words/Language.h"
#include "words/LayoutMap.h"

namespace tessarok {

/// Which layouts the person has enabled, which of them are the English and the Russian one, and
/// what their keys give; selects the other one after a word was retyped. Knows six layouts and
/// leaves every other alone. Process-wide state, main thread only.
class InputSource {
 public:
  using Handle = std::shared_ptr<platform::InputSourceHandle>;
  /// What every key gives, from each layout to the other.
  struct Maps {
    LayoutMap::Map enToRu;
    LayoutMap::Map ruToEn;
  };
  /// The layout that `switchTo` has selected, and when (seconds of uptime).
  struct RequestedSelection {
    std::string id;
    double at = 0;
  };

  InputSource() = delete;

  /// Whether the identifier is exactly one of the language's group.
  [[nodiscard]] static bool isInGroup(std::string_view identifier, Language language);
  /// The language of the group that the identifier is in; absent for none, and without one.
  [[nodiscard]] static std::optional<Language> languageOf(
      const std::optional<std::string>& identifier);
  /// The current source's identifier; absent when there is none.
  [[nodiscard]] static const std::optional<std::string>& current();
  [[nodiscard]] static std::vector<Handle> enabledLayouts();
  /// The layout of the group that the person used last, or else the first enabled one; null when
  /// none is enabled.
  [[nodiscard]] static Handle preferredLayout(Language language);
  /// Makes a layout of the group current; whether one is afterwards.
  static bool switchTo(Language language);

  /// What each key gives in both layouts on a keyboard type; absent when a layout has no data.
  [[nodiscard]] static std::optional<Maps> physicalMaps(const platform::InputSourceHandle& english,
                                                        const platform::InputSourceHandle& russian,
                                                        std::uint32_t keyboardType);
  /// Builds the maps for the current layouts when they are not the ones in force. True when the
  /// layout was changed by the person and not by `switchTo`.
  static bool prepareLayoutMaps();
  /// Called every two seconds: prepares again when the keyboard or the layout changed or a retry
  /// is due. True when the word in hand has to be forgotten.
  static bool refreshKeyboardTypeIfNeeded();
  /// Whether the maps in force fit the current layout and keyboard. Called for every key.
  [[nodiscard]] static bool isPreparedForCurrentInputSource();
  /// Whether the last preparation found a pair of layouts to work with.
  [[nodiscard]] static bool canProcessCurrentLayout();

  /// When a failed preparation is tried again, in seconds of uptime; 0 when none failed.
  [[nodiscard]] static double nextPreparationRetry();
};

}  // namespace tessarok

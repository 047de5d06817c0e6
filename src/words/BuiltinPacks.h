#pragma once

#include <array>
#include <string>
#include <string_view>

#include "words/WordSet.h"

namespace tessarok {

/// Ready-made lists of words that are never corrected, each switched on or off from the menu.
/// Main thread; files are read on a serial queue, and meanwhile the words stay as they are.
class BuiltinPacks {
 public:
  /// One list and its switch.
  struct Pack {
    /// Forms the settings key.
    std::string id;
    /// The menu item's text.
    std::string title;
    /// Base name of the data file.
    std::string resource;
    /// Whether the pack counts when the person has never switched it.
    bool defaultOn;
  };

  BuiltinPacks() = delete;

  /// The packs in the order of the menu.
  [[nodiscard]] static const std::array<Pack, 3>& all();
  [[nodiscard]] static bool isEnabled(const Pack& pack);
  /// The settings key that holds a pack's switch.
  [[nodiscard]] static std::string defaultsKey(const Pack& pack);
  /// Whether a normalised word was in an enabled pack at the last `rebuild`. Never waits.
  [[nodiscard]] static bool contains(std::string_view word);
  /// Whether the first `rebuild` has been asked for and is not done: no word is known yet.
  [[nodiscard]] static bool isLoading();
  /// The words of all enabled packs as of the last `rebuild`. Waits for it.
  [[nodiscard]] static WordSet words();
  /// Takes the switches into account again. Each file is read once; a missing one adds nothing
  /// and is tried again next time.
  static void rebuild();
};

}  // namespace tessarok

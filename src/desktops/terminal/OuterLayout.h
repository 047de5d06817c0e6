#pragma once

#include <cstdint>
#include <optional>

#include "desktops/terminal/TerminalInputSources.h"

namespace tessarok::terminal {

/// Guesses the desktop's layout, the outer one, from the characters that it sends, and turns
/// these into keys and into what the terminal's own layout types with them. Main thread.
///
/// Why this is needed: there are two layouts on the way of a key. The outer one cannot be asked
/// or selected; the own one is what the program switches.
///
/// Behaviour: the outer layout is of the alphabet of the last letter that came; before the first,
/// English. When the program switches the own layout, the outer one stays where it is, and from
/// then on the same keys type the other alphabet. So a character is typed as it came while both
/// layouts agree; otherwise its key is looked up in the outer layout, and the own one says what it
/// types. A character that the outer layout does not have is typed as it came.
///
/// When the alphabet changes, the person has switched the outer layout and means it: the own layout
/// follows. Only when the program had switched to that very layout before, the person means the
/// other one, because a press that changes nothing was not meant.
///
/// What the program has switched goes home with the end of the line, or of the text that the line
/// holds; what the person has chosen stays. Whoever switches before the next letter means to leave
/// what the program had switched to, and is there already.
class OuterLayout final {
 public:
  struct Key {
    /// `kNoKey` for characters that are on neither layout.
    std::int64_t code = 0;
    bool shift = false;
    /// What the key types.
    char32_t character = 0;
  };
  /// The code of no key of any layout.
  static constexpr std::int64_t kNoKey = 0xFFFF;

  explicit OuterLayout(TerminalInputSources& own) : own_(own) {}

  /// Takes note of a character that came, before anything else is done with it: the own layout
  /// may change by it.
  void note(char32_t character);
  [[nodiscard]] Key keyFor(char32_t character) const;
  /// Both layouts agree, so that every character is typed as it came.
  [[nodiscard]] bool agrees() const { return language_ == own_.language(); }
  /// The person asks for the other one of the own layouts.
  void toggle();
  /// A line has ended: the own layout is the outer one again, or the one that the person has
  /// chosen.
  void goHome();
  /// The same where the line goes on.
  void goHomeWithinLine();

 private:
  TerminalInputSources& own_;
  /// Of the outer layout.
  Language language_ = Language::english;
  /// Of the layout that the person has chosen; absent while they have left it to the outer one.
  std::optional<Language> chosen_;
  /// What the program had switched to when the layout went home within the line; absent from the
  /// next letter on.
  std::optional<Language> left_;
};

}  // namespace tessarok::terminal

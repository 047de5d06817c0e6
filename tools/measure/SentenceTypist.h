#pragma once

#include <filesystem>
#include <string>

#include "Sentence.h"
#include "desktops/layouts/KeyTable.h"
#include "desktops/virtual/Session.h"
#include "desktops/xkb/PauseKey.h"

namespace tessarok::measure {

/// Types sentences key by key through the whole program on a virtual desktop. One per process.
class SentenceTypist {
 public:
  enum class Layout { right, wrong };

  /// Seconds from one key to the next: time matters, because ё is on the key that pauses the
  /// program for some seconds. Sums of it are exact, and none is as long as the pause: otherwise
  /// rounding would say whether a key is still within that, and the figures would depend on what
  /// else was typed before.
  static constexpr double kKeyInterval = 0.203125;

  struct Setup {
    /// The directory of the word data.
    std::filesystem::path resources;
    /// Which key pauses: on a Mac the grave accent's, elsewhere what the person has chosen.
    xkb::PauseKey pauseKey{xkb::PauseKey::Choice::grave};
  };

  explicit SentenceTypist(const Setup& setup);

  /// Types the keys that the sentence has on its language's keyboard, starting with that
  /// language's layout selected or with the other one, and never looking up. The answer is what is
  /// on the screen at the end of the line. No sentence knows of the one before it.
  [[nodiscard]] std::string type(const Sentence& sentence, Layout layout);

 private:
  void strike(const layouts::KeyTable::Stroke& stroke);

  virtualdesktop::Session session_;
  xkb::PauseKey pauseKey_;
};

}  // namespace tessarok::measure

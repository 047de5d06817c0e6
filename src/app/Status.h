#pragma once

namespace tessarok {

/// How the corrector stands at one moment: what the icon shows, and what a person may ask for.
struct Status {
  /// Keys are believed to come through the tap.
  bool tapRunning = false;
  /// The current layout is one of a pair that words can be moved between.
  bool canProcess = false;
  bool enabled = false;
  /// For a few seconds, by the pause key.
  bool paused = false;
  /// Without it only conversion by hand works.
  bool hasWordData = false;

  [[nodiscard]] bool works() const { return tapRunning && canProcess; }
};

}  // namespace tessarok

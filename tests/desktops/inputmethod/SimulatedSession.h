#pragma once

#include <memory>
#include <optional>
#include <random>
#include <string>
#include <string_view>

#include "app/AppDelegate.h"
#include "desktops/inputmethod/FieldEventTaps.h"
#include "desktops/inputmethod/FieldInputSources.h"
#include "desktops/inputmethod/KeyFlow.h"
#include "desktops/plain/OnlyKeyboard.h"
#include "desktops/plain/PlainEvents.h"
#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/desktops/inputmethod/SimulatedProgram.h"
#include "tests/support/PartlyVirtualDesktop.h"

namespace tessarok::testing {

/// A person at a keyboard, an input method framework of no real kind, and one program, with the
/// whole corrector between them. Time passes only while the person types and waits. One a process.
class SimulatedSession final {
 public:
  /// Whose the layouts are: the framework's, which sends what it has translated as text and
  /// switches at once; or the desktop's, which takes its time to switch and keeps keys back
  /// meanwhile; or the desktop's, while programs translate keys when they are pressed, which may be
  /// before the switch whose end they come behind.
  enum class Layouts { frameworks, desktops, desktopsBeforeTheWay };

  SimulatedSession(const SimulatedProgram::Kind& kind, Layouts layouts, unsigned seed);
  SimulatedSession(const SimulatedSession&) = delete;
  SimulatedSession& operator=(const SimulatedSession&) = delete;
  ~SimulatedSession();

  /// Types the keys that these characters have in the English layout, at most so many seconds
  /// apart.
  void type(std::string_view keys, double mostBetween);
  /// Waits until nothing happens any more, and says what stands in the program's field.
  [[nodiscard]] std::string textInTheEnd();
  /// The messages that a person would have seen.
  [[nodiscard]] std::string messages();
  /// Nothing is pressed for so many seconds.
  void wait(double seconds);

 private:
  class Desktop;
  class Methods;

  void key(std::uint32_t xKey, bool isRelease);
  void arrive(const inputmethod::KeyEvent& event);
  [[nodiscard]] double upTo(double seconds);

  Layouts layouts_;
  std::mt19937 random_;
  std::unique_ptr<virtualdesktop::TemporaryDirectory> home_;
  std::unique_ptr<Desktop> desktop_;
  std::shared_ptr<AppDelegate> delegate_;
  std::shared_ptr<SimulatedProgram> program_;
  /// Those that are down at the keyboard.
  std::uint32_t modifiers_ = 0;
  double lastArrival_ = 0;
  int arriving_ = 0;
};

}  // namespace tessarok::testing

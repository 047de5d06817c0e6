#pragma once

#include <ibus.h>
#include <memory>
#include <string>
#include <string_view>

#include "desktops/virtual/TemporaryDirectory.h"
#include "desktops/virtual/TextField.h"
#include "tests/desktops/freedesktop/PrivateBus.h"
#include "tests/desktops/x11/Subprocess.h"

namespace tessarok::testing {

/// An IBus daemon of the test's own with Tessarok's engines, and a program with a text field that
/// speaks with it through libibus. Its keyboard has the layout of the engine that is on, as where a
/// desktop applies that. One a process.
class IbusSession final {
 public:
  /// What the program tells of its text.
  enum class Reports { nothing, all };

  /// `kind` is that of the desktop's session, as its environment names it.
  explicit IbusSession(Reports reports, const std::string& kind = "wayland");
  IbusSession(const IbusSession&) = delete;
  IbusSession& operator=(const IbusSession&) = delete;
  ~IbusSession();

  /// Types the keys that these characters have in the English layout, so many milliseconds apart.
  void type(std::string_view keys, int milliseconds);
  /// Types "ghbdtn" until it is put right, and empties the field.
  [[nodiscard]] bool waitForCorrector();
  /// Goes on in a text field of another program, by the name that it gives to IBus.
  void openProgram(const std::string& name);
  /// What stands in the field when nothing has changed for a while, or when it is `expected`.
  [[nodiscard]] std::string textInTheEnd(const std::string& expected);
  void setContentType(guint purpose, guint hints);
  /// The engine that is on.
  [[nodiscard]] std::string engine() const;
  /// How many keys IBus has kept from the program so far.
  [[nodiscard]] int swallowed() const { return swallowed_; }

 private:
  struct Pressed;

  void connect();
  void press(std::uint32_t xKey, bool shift);
  void handle(guint symbol, guint code, guint states);
  void insert(const std::string& text);
  void report();
  void turn(int milliseconds);

  Reports reports_;
  virtualdesktop::TemporaryDirectory folder_;
  PrivateBus bus_;
  std::unique_ptr<Subprocess> daemon_;
  IBusBus* ibus_ = nullptr;
  IBusInputContext* context_ = nullptr;
  virtualdesktop::TextField field_;
  int swallowed_ = 0;
  /// Keys of which IBus has not said what is to become of them.
  int asked_ = 0;
};

}  // namespace tessarok::testing

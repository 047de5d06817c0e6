#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/desktops/x11/Subprocess.h"
#include "tests/desktops/x11/TestKeyboard.h"

struct _XDisplay;

namespace tessarok::testing {

/// An X server of the test's own, with no screen but memory, and the hands at its keyboard.
class XServer {
 public:
  enum class Hardware {
    /// A server that is nothing but memory, with one keyboard.
    oneKeyboard,
    /// The same, but nobody can press keys by a program.
    noSyntheticKeys,
    /// The server that people run, with drivers of devices that are not there.
    twoKeyboards,
  };

  /// With these layouts, and with hot keys if `options` names some, as for setxkbmap.
  explicit XServer(const std::string& layouts = "us,ru", const std::string& options = "",
                   Hardware hardware = Hardware::oneKeyboard);
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;
  ~XServer();

  /// Such as ":5".
  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] _XDisplay* display() const { return display_; }
  /// Runs setxkbmap, to its end.
  void setLayouts(const std::string& layouts, const std::string& options = "",
                  const std::string& variants = "");

  /// The hands go to another of the keyboards, 0 or 1.
  void takeKeyboard(std::size_t number);

  /// Presses the keys that give these characters on a US keyboard, as fast as the server takes
  /// them. "\n", "\t" and "\b" are Return, Tab and Backspace.
  void type(std::string_view text);
  /// The same with time between the keys, as little as fingers need. Not with drivers.
  void typeByHand(std::string_view text);
  /// One key, by its X key code, as the hardware sends it; in so many milliseconds.
  void key(std::uint8_t key, bool isDown, unsigned long delay = 0);
  void tap(std::uint8_t key);
  /// A key with another held.
  void tapWith(std::uint8_t held, std::uint8_t key);
  /// A key that comes from no keyboard, as other programs make them.
  void syntheticKey(std::uint8_t key, bool isDown);
  void click();
  /// The server has dealt with everything so far.
  void sync();

  /// The layout group in force.
  [[nodiscard]] unsigned group();
  void lockGroup(unsigned group);
  [[nodiscard]] bool isCapsLocked();
  /// The X key codes that are down for the applications.
  [[nodiscard]] std::vector<std::uint8_t> keysDown();
  /// The device number of the keyboard in use.
  [[nodiscard]] int keyboard() const { return keyboard_; }
  void setKeyboardEnabled(bool enabled);
  /// Adds a pair of master devices, a pointer and a keyboard, which have names that begin so.
  void addMasters(std::string name);
  /// A program holds the keyboard.
  [[nodiscard]] bool isKeyboardHeld();
  /// What a key of the keyboard itself, not of all keyboards together, gives in its first layout.
  [[nodiscard]] unsigned long symbolOnTheKeyboard(std::uint8_t key);
  /// Makes a key give a character in every layout.
  void bindKey(std::uint8_t key, char32_t character);
  /// The same in the keymap of the keyboard itself, whoever holds it.
  void bindKeyOfTheKeyboard(std::uint8_t key, char32_t character);
  /// Says that the layouts were chosen by these names, whatever the keys give.
  void setNamesOfLayouts(const std::string& layouts);
  /// Tells the keys of these layouts one by one, and the names that they were chosen by, as servers
  /// of remote desktops do: of what else there is in a keymap, that of the last layouts stays.
  void setKeysOfLayouts(const std::string& layouts);
  /// Ends the server.
  void stop();
  /// The server takes what it is sent, and answers nothing until it resumes.
  void pause();
  void resume();
  /// The server does what it is sent by the others later.
  void serveNobodyElse();
  void serveAll();
  /// Gives the focus to the window that a program has opened.
  void focus(unsigned long window);
  /// The windows on the screen.
  [[nodiscard]] std::vector<unsigned long> windows();

 private:
  void start();
  [[nodiscard]] std::vector<std::string> command();
  void findKeyboard(std::string_view name);
  /// Takes note of what the server has read; how much there is left.
  int readKeys();

  Hardware hardware_;
  virtualdesktop::TemporaryDirectory folder_;
  std::unique_ptr<Subprocess> server_;
  std::string name_;
  _XDisplay* display_ = nullptr;
  int keyboard_ = 0;
  /// The keyboard opened for pressing keys on it; a structure of Xlib that has no name.
  void* device_ = nullptr;
  /// Where the server has devices.
  std::vector<std::unique_ptr<TestKeyboard>> hands_;
  TestKeyboard* hand_ = nullptr;
  /// Keys that were pressed and released, and that the server has not read yet.
  int unread_ = 0;
  int inputOpcode_ = 0;
};

}  // namespace tessarok::testing

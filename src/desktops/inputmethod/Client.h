#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "desktops/inputmethod/KeyEvent.h"

namespace tessarok::inputmethod {

/// A text field of some program, as an input method framework reaches it: what the framework tells
/// of it and does for the corrector. The object may outlive the field, of which then nothing is
/// known and to which nothing goes. Main thread.
class Client {
 public:
  /// Seconds that a key takes to a program that tells nothing of its text, typed in turn: on
  /// Wayland and a machine with four times as much to do as it can, terminals lost Backspaces in 1
  /// to 15 of 50 lines with 16 ms, and in none with 40. On X11 50 lines came out in Chromium in
  /// three of five runs with 16 ms, at a load of 2 to 7, and in all five with 40.
  static constexpr double kSettleOfSilence = 0.04;
  /// What its side makes of what is sent to it.
  struct Habits {
    /// Takes the bytes in what it is asked to delete for characters, or may: only of ASCII are both
    /// the same.
    bool maySwapBytes = false;
    /// A key that is handed back comes with the modifiers of the moment, not with its own.
    bool readsModifiersLate = false;
    /// And so does one that is merely let through, so that what it types with Shift is to be sent
    /// as text.
    bool losesShift = false;
    /// Of two texts that are sent one soon behind the other one may be lost.
    bool takesOneTextAtATime = false;
    /// A key that is handed back is lost, unless it types a character. One that is let through
    /// comes behind every text that was sent before, but not behind what was to be deleted.
    bool takesNoKeysBack = false;
    /// Tells some changes of its text only when it is asked to.
    bool reportsWhenAsked = false;
    /// Seconds that a key takes to it at most, as far as it tells nothing of its text.
    double settle = 0.016;
    /// Hands its keys to the framework itself, so that they come as late as it is behind.
    bool handsKeysOn = false;
  };
  /// What the program tells of its text.
  struct Report {
    /// The text before the caret.
    std::string before;
    bool isSelected = false;
  };
  /// What became of a key that was shown to the framework anew.
  struct Replayed {
    /// Somebody has taken it: it is not to go to its program.
    bool isTaken = false;
    /// The framework has not looked at it.
    bool isHidden = false;
  };

  Client() = default;
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;
  virtual ~Client() = default;

  [[nodiscard]] virtual Habits habits() const = 0;
  /// The name of its program; empty when it is not known.
  [[nodiscard]] virtual std::string program() const = 0;
  [[nodiscard]] virtual bool hasFocus() const = 0;
  /// Whether it says that a password is typed, or that nothing is for an input method.
  [[nodiscard]] virtual bool isSecret() const = 0;
  /// Whether something is being composed of several keys.
  [[nodiscard]] virtual bool isComposing() const = 0;
  /// Whether it deletes the text before its caret when it is asked to.
  [[nodiscard]] virtual bool canDelete() const = 0;
  /// Absent when it reports nothing.
  [[nodiscard]] virtual std::optional<Report> report() const = 0;

  virtual void commit(const std::string& text) = 0;
  /// So many scalars before the caret.
  virtual void deleteBefore(std::size_t scalars) = 0;
  /// Hands a key to the program, pressed and released.
  virtual void forward(const Key& key) = 0;
  /// The time until which what was sent may not have come to its program, whose time begins then;
  /// absent when it has, or when nobody tells.
  [[nodiscard]] virtual std::optional<double> undeliveredUntil(double) const { return {}; }
  /// Asks for a report, for clients that tell one then.
  virtual void askForReport() {}
  /// Shows a key to the framework as if it had just been pressed. `show` says what the corrector
  /// makes of it, and is called once, unless somebody else takes the key before. `translated` is
  /// the key in the layout that is on now.
  [[nodiscard]] virtual Replayed replay(const Key& key, const Key& translated, int time,
                                        const std::function<KeyAnswer()>& show) = 0;
};

}  // namespace tessarok::inputmethod

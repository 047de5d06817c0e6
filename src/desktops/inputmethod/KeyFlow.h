#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <variant>

#include "desktops/inputmethod/Client.h"
#include "desktops/inputmethod/ClientField.h"
#include "desktops/inputmethod/FieldEventTaps.h"
#include "desktops/inputmethod/FieldInputSources.h"
#include "desktops/inputmethod/KeyLag.h"
#include "desktops/inputmethod/ModifierWatch.h"
#include "desktops/plain/PlainKeyboard.h"
#include "desktops/xkb/ManualKey.h"
#include "desktops/xkb/PauseKey.h"
#include "platform/Clock.h"
#include "platform/RunLoop.h"
#include "platform/SystemLog.h"
#include "typing/KeyCodes.h"

namespace tessarok::inputmethod {

/// The way of the keys: from the text field's program through the tap and back, and the retyping of
/// words. Main thread.
///
/// Retyping takes several messages to the program, and some must have been dealt with before the
/// next one is sent (`ClientField`). Keys that the person presses meanwhile are held, and are
/// replayed in their order: nothing is lost, doubled or reordered.
class KeyFlow final {
 public:
  /// All outlive this object.
  struct Parts {
    FieldEventTaps& taps;
    FieldInputSources& inputSources;
    plain::PlainKeyboard& keyboard;
    platform::RunLoop& runLoop;
    platform::Clock& clock;
    /// Runs everything that is queued on the loop: a key is to find nothing.
    std::function<void()> runQueue;
    /// Sends on its way what was said to a text field.
    std::function<void()> flush;
    /// Is told what a person should know.
    platform::SystemLog& log;
  };

  KeyFlow(Parts parts, xkb::ManualKey manualKey);
  KeyFlow(const KeyFlow&) = delete;
  KeyFlow& operator=(const KeyFlow&) = delete;

  // What the framework tells.
  [[nodiscard]] KeyAnswer keyEvent(const std::shared_ptr<Client>& client, const KeyEvent& event);
  void focusIn(const std::shared_ptr<Client>& client);
  void focusOut(Client& client);
  void reset(Client& client);
  void textReported(Client& client);
  void destroyed(Client& client);
  /// What was sent has come to its program.
  void delivered();
  /// A selected input method is the current one now.
  void inputMethodSettled();

  /// Sends everything that still waits at once. For the end.
  void finish();

  void setManualKey(xkb::ManualKey key) { manualKey_ = key; }
  void setPauseKey(xkb::PauseKey key) { pauseKey_ = key; }
  /// The text field in which keys are being typed; null for none.
  [[nodiscard]] Client* client() const { return client_.get(); }
  /// Whether nothing may be kept or changed there: passwords, or nothing for an input method, are
  /// typed, or a correction has damaged the text.
  [[nodiscard]] bool isLeftAlone() const;

  /// The caret may be in another place.
  std::function<void()> onOtherPlace;

 private:
  /// Erases and types.
  struct Retype {
    std::size_t erase = 0;
    std::string text;
  };
  struct Select {
    std::string inputMethod;
  };
  /// Hands a key back to the program.
  struct Forward {
    Key key;
  };
  /// A key that the person pressed.
  struct Held {
    Key key;
    int time = 0;
  };
  using Step = std::variant<Retype, Select, Forward, Held>;
  /// A key press as the tap and the field see it.
  struct Press {
    FieldEvent event;
    /// What it types; empty for keys that do something else.
    std::string text;
  };

  /// Seconds that the program gets for a key, as far as it tells nothing of its text.
  [[nodiscard]] double settleOf(const Client& client) const;
  [[nodiscard]] KeyAnswer modifier(const KeyEvent& event);
  [[nodiscard]] KeyAnswer pressed(Client& client, const KeyEvent& event);
  [[nodiscard]] KeyAnswer released(const KeyEvent& event);
  [[nodiscard]] KeyAnswer replayed(Client& client, Press& press);
  [[nodiscard]] Press describe(const Key& key) const;
  /// Whether the key would reach its program without the Shift with which it was pressed. What it
  /// types is sent as text instead.
  [[nodiscard]] static bool losesShift(const Client& client, const Press& press);
  /// A framework may translate a key by the state that Shift has by now, which on a busy machine is
  /// that of a later key. The symbol by the state that it had; absent when that is what was found.
  [[nodiscard]] std::optional<std::uint32_t> symbolWithoutLateShift(const Client& client,
                                                                    const KeyEvent& event) const;
  /// Whether a key was translated by the layout that a switch has left, and has come behind that.
  [[nodiscard]] bool isOfLayoutBefore(const Client& client, const KeyEvent& event) const;
  /// Whether what a key types is not known, because something is composed of several keys. The tap
  /// does not take it for what it types alone then.
  [[nodiscard]] bool markComposed(const Client& client, Press& press) const;
  void applyManualKey(FieldEvent& event, const Key& key) const;
  void applyPauseKey(FieldEvent& event) const;
  [[nodiscard]] bool mustWait(ClientField::Way way);
  [[nodiscard]] KeyAnswer hold(const KeyEvent& event);
  /// Sends at once what waits, because a key behind it can neither be held nor be handed back.
  /// Words that have not been erased yet stay as they were typed.
  void makeWay(Client& client);
  /// The tap has taken a key that cannot be handed back. Where it is to come behind a word, it
  /// passes and the word stays as it was typed: what is erased behind a key is erased too late.
  [[nodiscard]] KeyAnswer takenButKept(Client& client);
  /// Whether the key is to go on.
  [[nodiscard]] bool showToTap(FieldEvent& event);
  void queuePosted();
  void notePassed(const Press& press, ClientField::Way way, bool own);

  void runSoon();
  void run();
  void runAt(double time, const Client& client);
  /// The time at which to go on; absent when the first step is done.
  [[nodiscard]] std::optional<double> perform(Client& client);
  [[nodiscard]] std::optional<double> retype(Client& client, Retype& step);
  [[nodiscard]] std::optional<double> replayFirst(Client& client);
  [[nodiscard]] std::optional<double> waitForWay(const Client& client, ClientField::Way way);
  [[nodiscard]] std::optional<double> waitForKey(const Client& client, std::uint32_t states);
  [[nodiscard]] std::optional<double> waitForModifiers(const Client& client, std::uint32_t states);
  [[nodiscard]] std::optional<double> unsettledUntil();
  [[nodiscard]] std::optional<double> undeliveredUntil(const Client& client);
  [[nodiscard]] bool mayDelete(const Client& client, std::size_t characters) const;
  void erase(Client& client, std::size_t characters);
  /// The words are not to be erased: only what comes behind them remains to be typed.
  static void leaveAsTyped(Retype& step);
  void commit(Client& client, const std::string& text);
  void forward(Client& client, const Key& key);
  /// Sends the texts that were gathered to be one.
  void sendText(Client& client);
  void replay(Client& client, const Held& held, const Key& translated, Press& press);
  [[nodiscard]] Key translated(const Client& client, const Key& key) const;
  void selectInputMethod(Client& client, const std::string& inputMethod);
  void hurry(Client& client);
  void expectReset(bool own);
  void announceOtherPlace();
  void leaveAlone(const Client& client);
  [[nodiscard]] double now() const { return parts_.clock.uptime(); }
  /// Of what the corrector sends.
  [[nodiscard]] ClientField::Sending own(ClientField::Way way) const {
    return {.way = way, .isOwn = true, .now = now()};
  }

  Parts parts_;
  xkb::ManualKey manualKey_;
  xkb::PauseKey pauseKey_;
  /// Null when there is none.
  std::shared_ptr<Client> client_;
  ClientField field_;
  /// The text fields that a correction has damaged.
  std::set<const Client*> leftAlone_;
  ModifierWatch modifiers_;
  KeyLag lag_;
  std::deque<Step> steps_;
  /// The X key codes whose press was held, so that their release is not sent on alone.
  std::set<int> heldKeys_;
  /// The X key codes that are down, and as what the tap saw them. A press of one of them is a
  /// repetition.
  std::map<int, KeyCode> keysDown_;
  /// The framework has not seen the last key that was pressed.
  bool isPressHidden_ = false;
  /// Texts that are to be sent as one, for programs that take one at a time.
  std::string gathered_;
  bool isRunning_ = false;
  bool isHurrying_ = false;
  bool isRunDue_ = false;
  std::uint64_t alarm_ = 0;
  /// The layout that the corrector has switched away from, while keys may still come that programs
  /// have translated by it; null when there is none.
  std::shared_ptr<const XkbLayout> layoutBefore_;
  double layoutBeforeUntil_ = 0;
  /// Programs reset their input method at keys such as Backspace; so many may yet, until then.
  int resetsExpected_ = 0;
  double resetsExpectedUntil_ = 0;
};

}  // namespace tessarok::inputmethod

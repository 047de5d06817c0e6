#pragma once

#include <cstdint>
#include <deque>
#include <fcitx/inputcontext.h>
#include <fcitx/instance.h>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <variant>

#include "desktops/fcitx5/ClientField.h"
#include "desktops/fcitx5/FcitxEventTaps.h"
#include "desktops/fcitx5/FcitxInputSources.h"
#include "desktops/fcitx5/FcitxRunLoop.h"
#include "desktops/fcitx5/ModifierWatch.h"
#include "desktops/plain/PlainKeyboard.h"
#include "desktops/xkb/ManualKey.h"
#include "desktops/xkb/PauseKey.h"
#include "platform/Clock.h"
#include "platform/SystemLog.h"
#include "typing/KeyCodes.h"

namespace tessarok::fcitx5 {

/// The way of the keys: from the text field's program through the tap and back, and the retyping of
/// words. Main thread.
///
/// Retyping takes several messages to the program, and some must have been dealt with before the
/// next one is sent (`ClientField`). Keys that the person presses meanwhile are held, and are
/// replayed in their order: nothing is lost, doubled or reordered.
class KeyFlow final {
 public:
  /// All outlive this object. `flush` sends on its way what was said to a text field.
  struct Parts {
    fcitx::Instance& instance;
    FcitxEventTaps& taps;
    FcitxInputSources& inputSources;
    platform::PlainKeyboard& keyboard;
    FcitxRunLoop& runLoop;
    platform::Clock& clock;
    std::function<void()> flush;
    /// Is told what a person should know.
    platform::SystemLog& log;
  };

  KeyFlow(Parts parts, xkb::ManualKey manualKey);
  KeyFlow(const KeyFlow&) = delete;
  KeyFlow& operator=(const KeyFlow&) = delete;

  // What Fcitx tells.
  void keyEvent(fcitx::KeyEvent& event);
  void focusIn(fcitx::InputContext& context);
  void focusOut(fcitx::InputContext& context);
  void reset(fcitx::InputContext& context);
  void textReported(fcitx::InputContext& context);
  void destroyed(fcitx::InputContext& context);

  /// Sends everything that still waits at once. For the end.
  void finish();

  void setManualKey(xkb::ManualKey key) { manualKey_ = key; }
  void setPauseKey(xkb::PauseKey key) { pauseKey_ = key; }
  /// The text field in which keys are being typed; null for none.
  [[nodiscard]] fcitx::InputContext* context() const { return context_.get(); }
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
    fcitx::Key key;
  };
  /// A key that the person pressed.
  struct Held {
    fcitx::Key key;
    int time = 0;
  };
  using Step = std::variant<Retype, Select, Forward, Held>;
  /// A key press as the tap and the field see it.
  struct Press {
    FcitxEvent event;
    /// What it types; empty for keys that do something else.
    std::string text;
  };

  void modifier(fcitx::KeyEvent& event);
  void pressed(fcitx::KeyEvent& event);
  void released(fcitx::KeyEvent& event);
  void replayed(fcitx::KeyEvent& event);
  [[nodiscard]] Press describe(const fcitx::Key& key) const;
  /// Whether the key would reach its program without the Shift with which it was pressed. KWin
  /// tells a program the modifiers of the moment in which it hands a key back, and by then Shift
  /// may be up: "сайт!" became "сайт1" with keys 15 ms apart. What it types is sent as text
  /// instead.
  [[nodiscard]] static bool losesShift(const fcitx::InputContext& context, const Press& press);
  /// On X11 Fcitx translates a key by the state that Shift has by now, which on a busy machine is
  /// that of a later key. The symbol by the state that it had; absent when that is what Fcitx
  /// found.
  [[nodiscard]] std::optional<fcitx::KeySym> symbolWithoutLateShift(const fcitx::KeyEvent& event);
  /// Whether what a key types is not known, because something is composed of several keys.
  [[nodiscard]] bool isComposing(fcitx::InputContext& context);
  /// The same, after which the tap does not take the key for what it types alone.
  [[nodiscard]] bool markComposed(fcitx::InputContext& context, Press& press);
  void applyManualKey(FcitxEvent& event, const fcitx::Key& key) const;
  void applyPauseKey(FcitxEvent& event) const;
  [[nodiscard]] bool mustWait(ClientField::Way way);
  void hold(fcitx::KeyEvent& event);
  /// Whether the key is to go on.
  [[nodiscard]] bool showToTap(FcitxEvent& event);
  void queuePosted();
  void notePassed(const Press& press, ClientField::Way way, bool own);

  void runSoon();
  void run();
  /// The time at which to go on; absent when the first step is done.
  [[nodiscard]] std::optional<double> perform(fcitx::InputContext& context);
  [[nodiscard]] std::optional<double> retype(fcitx::InputContext& context, Retype& step);
  [[nodiscard]] std::optional<double> replayFirst(fcitx::InputContext& context);
  [[nodiscard]] std::optional<double> waitForWay(ClientField::Way way);
  [[nodiscard]] std::optional<double> waitForKey(const fcitx::InputContext& context,
                                                 fcitx::KeyStates states);
  [[nodiscard]] std::optional<double> waitForModifiers(const fcitx::InputContext& context,
                                                       fcitx::KeyStates states);
  [[nodiscard]] std::optional<double> unsettledUntil();
  [[nodiscard]] bool mayDelete(const fcitx::InputContext& context, std::size_t characters) const;
  void erase(fcitx::InputContext& context, std::size_t characters);
  void forward(fcitx::InputContext& context, const fcitx::Key& key);
  void commit(fcitx::InputContext& context, const std::string& text);
  void replay(fcitx::InputContext& context, const Held& held, Press& press);
  [[nodiscard]] fcitx::Key translated(fcitx::InputContext& context, const fcitx::Key& key);
  void hurry(fcitx::InputContext& context);
  void expectReset(bool own);
  void announceOtherPlace();
  void leaveAlone(fcitx::InputContext& context);
  [[nodiscard]] double now() const { return parts_.clock.uptime(); }
  /// Of what the corrector sends.
  [[nodiscard]] ClientField::Sending own(ClientField::Way way) const {
    return {.way = way, .isOwn = true, .now = now()};
  }

  Parts parts_;
  xkb::ManualKey manualKey_;
  xkb::PauseKey pauseKey_;
  fcitx::TrackableObjectReference<fcitx::InputContext> context_;
  ClientField field_;
  /// The text fields that a correction has damaged.
  std::set<fcitx::ICUUID> leftAlone_;
  ModifierWatch modifiers_;
  std::deque<Step> steps_;
  /// The X key codes whose press was held, so that their release is not sent on alone.
  std::set<int> heldKeys_;
  /// The X key codes that are down, and as what the tap saw them. A press of one of them is a
  /// repetition.
  std::map<int, KeyCode> keysDown_;
  /// Fcitx has not seen the last key that was pressed.
  bool isPressHidden_ = false;
  /// The key that is being replayed; null when none is.
  Press* replayed_ = nullptr;
  bool isRunning_ = false;
  bool isHurrying_ = false;
  bool isRunDue_ = false;
  std::uint64_t alarm_ = 0;
  /// Programs reset their input method at keys such as Backspace; so many may yet, until then.
  int resetsExpected_ = 0;
  double resetsExpectedUntil_ = 0;
};

}  // namespace tessarok::fcitx5

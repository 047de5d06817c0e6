#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "platform/EventTap.h"
#include "typing/Boundary.h"
#include "typing/DiagnosticLog.h"
#include "typing/KeyCodes.h"
#include "typing/WordState.h"
#include "words/Language.h"

namespace tessarok {

/// The one object between the person's keys and the application: owns the event tap, follows the
/// word being typed, asks for a decision when it ends, and retypes it. Main thread only.
///
/// The parts are in files of their own: `KeyTap.cpp` the tap and its watchdog,
/// `KeyTapHandle.cpp` one event, `KeyTapEvaluate.cpp` the end of a word, `KeyTapReplace.cpp`
/// retyping and conversion by hand.
class KeyTap final : public std::enable_shared_from_this<KeyTap> {
 public:
  static constexpr KeyCode kDelete = keyCodes::backspace;
  static constexpr KeyCode kSpace = keyCodes::space;
  static constexpr KeyCode kReturn = keyCodes::returnKey;
  static constexpr KeyCode kTab = keyCodes::tab;
  static constexpr KeyCode kEnter = keyCodes::enter;
  static constexpr std::array<KeyCode, 2> kPauseKeys = {keyCodes::grave, keyCodes::isoSection};
  /// Keys after which the place of the caret is not known.
  static constexpr std::array<KeyCode, 10> kCaretMovers = {
      keyCodes::forwardDelete, keyCodes::left,   keyCodes::right,
      keyCodes::down,          keyCodes::up,     keyCodes::home,
      keyCodes::end,           keyCodes::pageUp, keyCodes::pageDown,
      keyCodes::escape,
  };
  /// What the program writes into the user data of every event it posts ("TSRK"), to know it
  /// again when it comes back through the tap.
  static constexpr std::int64_t kMarker = 0x5453524B;
  /// The setting that keeps `shiftFixEnabled`.
  static constexpr const char* kShiftFixKey = "shiftLagFix";
  /// The length of one pause, seconds.
  static constexpr double kPauseDuration = 5.0;

  /// What a conversion by hand makes of a word.
  struct ManualSwap {
    std::string converted;
    /// Whose layout the new word belongs to; absent when it has no letters.
    std::optional<Language> language;
  };

  /// The process-wide instance, made on first use and never destroyed.
  [[nodiscard]] static KeyTap& shared();

  KeyTap();
  KeyTap(const KeyTap&) = delete;
  KeyTap& operator=(const KeyTap&) = delete;
  ~KeyTap();

  // The tap and its watchdog.

  /// Creates and enables the tap if possible; whether a working tap exists afterwards.
  bool start();
  /// Removes the tap and forgets the word.
  void stop();
  /// Recreates a tap that the system has disabled; whether a new, enabled one exists.
  bool reArmIfDisabled();
  /// Recreates a tap that keys do not reach although the hardware produces them: after
  /// `silenceLimit` seconds without a key, five at least. Whether a new, enabled one exists.
  bool heartbeatRecreateIfStale(double silenceLimit);
  [[nodiscard]] bool tapExists() const { return tap_ != nullptr; }
  [[nodiscard]] bool tapIsEnabled() const { return tap_ != nullptr && tap_->isEnabled(); }

  // One event.

  /// Decides about one event of the tap: the event itself to deliver it, null to swallow it.
  /// `event` may be null only for the pseudo-events of a disabled tap.
  platform::Event* handle(platform::EventTapProxy* proxy, platform::EventType type,
                          platform::Event* event);
  /// Forgets the word and all that came before it.
  void resetWord();
  /// Forgets the word after a shortcut or a change of layout.
  void invalidateInputSourceContext(WordState::ArmedRejection rejection);

  // The end of a word.

  /// Judges the word in `buffer` when `boundary` ends it. True when a replacement was posted, which
  /// includes the boundary.
  bool evaluateAndFix(const Boundary& boundary);

  // Retyping.

  /// Erases `deleteCount` Characters, types `text`, posts `actionEvent` again and selects a layout
  /// of the language, each if given. All events are made before the first is posted: false means
  /// that nothing was.
  bool replace(std::size_t deleteCount, std::string_view text, std::optional<Language> switchTo,
               platform::Event* actionEvent);
  /// ⌥Space: converts the word being typed, or else the last one.
  void manualConvert();
  /// What a conversion by hand makes of a word; absent when it makes nothing of it.
  [[nodiscard]] static std::optional<ManualSwap> manualSwap(std::string_view word);

  // State that the menu, the icon and the tests look at.

  [[nodiscard]] const WordState& word() const { return word_; }
  [[nodiscard]] const std::set<KeyCode>& swallowedKeyUps() const { return swallowedKeyUps_; }
  /// Uptime of the last hardware key that the tap saw, or of the tap's creation; 0 while stopped.
  [[nodiscard]] double lastKeyEventAt() const { return lastKeyEventAt_; }
  /// Uptime at which the current pause ends; in the past when there is none.
  [[nodiscard]] double pausedUntil() const { return pausedUntil_; }
  [[nodiscard]] bool isPaused() const;
  /// Words stay as typed for `kPauseDuration` from now on. The pause key does so too.
  void startPause();

  /// Automatic correction is switched on.
  bool enabled = true;
  /// Shift-lag correction is switched on.
  bool shiftFixEnabled = true;
  /// Called when a pause starts and when it ends.
  std::function<void()> onPauseChange;

  /// Writes one line to the diagnostic log; `message` is called only when the log is on.
  template <typename Message>
  static void dbg(Message&& message) {
    if (DiagnosticLog::isOn()) DiagnosticLog::write(message());
  }

 private:
  struct KeyPress;

  bool createTap();
  bool recreate();

  platform::Event* handleDisabledTap(platform::EventType type, platform::Event* event);
  platform::Event* handleKeyUp(platform::Event* event, KeyCode keyCode);
  platform::Event* handleKeyDown(platform::Event* event, KeyCode keyCode);
  void forgetForSecureInput();
  void ignoreWhileOff(const KeyPress& key);
  void ignoreWhileUnprepared(const KeyPress& key);
  void ignoreWhilePaused(const KeyPress& key);
  [[nodiscard]] bool startsPause(const KeyPress& key) const;
  void endPauseIfOver();
  void handleShortcut(const KeyPress& key);
  bool handleBoundaryKey(const KeyPress& key);
  void handleBackspace();
  bool handleText(const KeyPress& key);
  void handleEmptyPayload();
  static void noteUnusablePayload(std::size_t units);
  bool handlePunctuation(platform::Event* event, std::string_view character, std::size_t units);
  void handleWordCharacter(std::string_view character, std::size_t units);
  void swallowKeyUpOf(KeyCode keyCode) { swallowedKeyUps_.insert(keyCode); }

  struct Conversion;
  struct RetroFix;

  void confirmRejection();
  bool applyConversion(const Conversion& conversion, const Boundary& boundary);
  [[nodiscard]] RetroFix retroactiveFix(Language to) const;
  bool applyShiftLag(const std::string& fixed, const Boundary& boundary);
  void leave(const Boundary& boundary);

  void convertWordBeingTyped();
  void convertLastWord();

  WordState word_;
  std::unique_ptr<platform::EventTap> tap_;
  std::unique_ptr<platform::RunLoopSource> runLoopSource_;
  double lastKeyEventAt_ = 0;
  /// Set while an event is being handled; without it nothing can be posted.
  platform::EventTapProxy* callbackProxy_ = nullptr;
  /// Keys whose press was swallowed, so that their release is swallowed too.
  std::set<KeyCode> swallowedKeyUps_;
  double pausedUntil_ = 0;
  /// The text of the key in hand; a member only to keep its storage.
  std::string typedText_;
};

}  // namespace tessarok

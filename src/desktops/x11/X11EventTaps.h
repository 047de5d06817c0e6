#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desktops/posix/PollLoop.h"
#include "desktops/x11/Keyboards.h"
#include "desktops/x11/Layouts.h"
#include "desktops/x11/Typist.h"
#include "desktops/x11/X11Event.h"
#include "desktops/xkb/ManualKey.h"
#include "desktops/xkb/PauseKey.h"
#include "platform/EventTaps.h"

namespace tessarok::x11 {

/// The way of the keys: from the keyboards, which are held while there is a tap, through the tap,
/// and on to the applications as synthetic keys, with what the tap's callback posts right behind.
/// Main thread.
///
/// Everything that can go wrong opens the way: keyboards that cannot all be held are all let go.
class X11EventTaps final : public platform::EventTaps {
 public:
  /// All outlive this object.
  struct Parts {
    Keyboards& keyboards;
    Layouts& layouts;
    Typist& typist;
    posix::PollLoop& runLoop;
  };

  X11EventTaps(const Parts& parts, xkb::ManualKey manualKey, xkb::PauseKey pauseKey);
  ~X11EventTaps() override;

  /// The callback gets keys and buttons, whatever the mask. Null when the keyboards cannot be
  /// held; `onRefused` says why.
  std::unique_ptr<platform::EventTap> create(std::uint64_t mask,
                                             platform::EventTapCallback callback,
                                             void* userData) override;
  bool preflightPostAccess() override { return true; }

  void keyDown(int device, std::uint8_t key, bool repeats);
  void keyUp(int device, std::uint8_t key);
  /// A key whose keyboard is being let go, past the tap.
  void passOn(std::uint8_t key, bool isDown);
  /// A button of the mouse went down, by its X number.
  void buttonDown(int button);
  /// Keyboards came or went, as for `Keyboards::update`.
  void updateKeyboards(const KeyboardChanges& changes);
  /// Lets the keyboards go for good: no tap can be created any more.
  void close();

  /// Called with the reason when keyboards are let go, or not held, against the program's will.
  std::function<void(const std::string& reason)> onRefused;
  /// Called when keyboards begin and cease to be held.
  std::function<void(bool held)> onHeld;

 private:
  class Tap;
  class Proxy;
  /// A key that is down on some keyboard.
  struct Held {
    int device = 0;
    /// What the tap saw; absent for keys that it does not see.
    std::optional<std::int64_t> code;
  };

  [[nodiscard]] bool holdWhenIdle();
  [[nodiscard]] bool hold();
  void letGo();
  void refuse(const std::string& reason);
  void prepare(std::uint8_t key, bool repeats);
  [[nodiscard]] std::uint64_t flags() const;
  void pass(std::uint8_t key);
  [[nodiscard]] bool send(X11Event& event);
  void typePosted();
  void releaseKeysOf(int device);

  Parts parts_;
  xkb::ManualKey manualKey_;
  xkb::PauseKey pauseKey_;
  std::unique_ptr<Proxy> proxy_;
  Tap* tap_ = nullptr;
  std::map<std::uint8_t, Held> held_;
  /// The event in hand; a member only to keep its storage.
  X11Event event_;
  std::vector<X11Event> posted_;
  /// Tells a wait for idle keyboards from those before.
  std::uint64_t wait_ = 0;
  bool isClosed_ = false;
};

}  // namespace tessarok::x11

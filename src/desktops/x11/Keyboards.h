#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "desktops/x11/KeyboardChanges.h"
#include "desktops/x11/XConnection.h"
#include "platform/Failure.h"

union _XEvent;

namespace tessarok::x11 {

/// The keyboards of the machine, which are held as long as there is a tap: their keys then come to
/// this program alone. Main thread.
///
/// Operational notes. A keyboard that was disabled and enabled again comes back connected and held
/// at once, so that every key would come twice: it is let go of and held again. The keys that were
/// pressed in between have come twice nevertheless, and are no keys to be passed on. To let go of a
/// disabled one has crashed servers. A held keyboard misses changes of the keymap, and its keymap
/// is what the server goes back to in the end, so such changes are copied to it.
class Keyboards final {
 public:
  /// `connection` outlives this object.
  explicit Keyboards(XConnection& connection);
  Keyboards(const Keyboards&) = delete;
  Keyboards& operator=(const Keyboards&) = delete;
  ~Keyboards();

  /// Holds every keyboard; why not, when the server refuses one. Then none is held.
  platform::Failure hold();
  void letGo();
  [[nodiscard]] bool isHolding() const { return isHolding_; }
  /// No key of any keyboard is down. One that went down before the keyboards were held would come
  /// up unseen by the others, and stay down for them.
  [[nodiscard]] bool isIdle();

  /// Something was plugged in, pulled out, enabled or disabled.
  /// While keyboards are held, why one could not be; then none is held any more.
  platform::Failure update(const KeyboardChanges& changes);
  /// Gives the held keyboards the server's keymap.
  void copyKeymap();
  /// Another program has changed what keys of a held keyboard give, as servers of remote desktops
  /// do for a character that no key has: the synthetic keys are to give it too. An event of XKB;
  /// false when there is nothing to do.
  bool adoptKeys(const _XEvent& event);
  /// Repetitions come from the keyboards themselves, so synthetic keys must not repeat as well.
  void silenceSyntheticRepeats();

  [[nodiscard]] bool contains(int device) const;
  /// A keyboard that came while they are held is not held yet: a key of it is down. It is to be
  /// updated again.
  [[nodiscard]] bool isWaiting() const;
  /// Whether a key that came with this serial number of the connection was pressed before its
  /// keyboard was held as it is now. The application has it already then.
  [[nodiscard]] bool isPassedOn(int device, unsigned long serial) const;
  /// Called for a keyboard that is there no more: what was pressed on it will not be released.
  std::function<void(int device)> onGone;
  /// Called before and behind letting go of them: keys that they have sent so far are on their way
  /// to nobody else.
  std::function<void()> onLettingGo;

 private:
  struct Keyboard {
    int device = 0;
    bool isHeld = false;
    /// The serial number of the request that it is held by.
    unsigned long heldBy = 0;
  };

  /// The serial numbers of the requests that gave held keyboards a keymap.
  struct Copy {
    unsigned long first = 0;
    unsigned long last = 0;
  };

  [[nodiscard]] std::vector<int> present();
  void findKeyboards(const KeyboardChanges& changes = {});
  [[nodiscard]] bool isHeld(int device) const;
  [[nodiscard]] bool isIdle(const Keyboard& keyboard) const;
  [[nodiscard]] bool hold(Keyboard& keyboard);
  void free(const Keyboard& keyboard);
  void watch(int device);
  void endCopy(unsigned long first);
  [[nodiscard]] bool isCopy(unsigned long serial);
  void restoreSyntheticRepeats();
  [[nodiscard]] std::string nameOf(int device);

  XConnection& connection_;
  std::vector<Keyboard> keyboards_;
  bool isHolding_ = false;
  /// What is still to be told of changes that this object makes itself.
  std::vector<Copy> copies_;
  /// The keyboard of synthetic keys; 0 when there is none.
  int synthetic_ = 0;
};

}  // namespace tessarok::x11

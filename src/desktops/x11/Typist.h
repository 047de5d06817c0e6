#pragma once

#include <array>
#include <bitset>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "desktops/x11/Layouts.h"
#include "desktops/x11/Pace.h"
#include "desktops/x11/X11Event.h"
#include "desktops/x11/XConnection.h"
#include "platform/RunLoop.h"

namespace tessarok::x11 {

/// Presses synthetic keys, which reach the applications like those of any keyboard. Main thread.
class Typist final {
 public:
  /// All outlive this object.
  Typist(XConnection& connection, Layouts& layouts, platform::RunLoop& runLoop)
      : connection_(connection), layouts_(layouts), runLoop_(runLoop), pace_(connection) {}
  Typist(const Typist&) = delete;
  Typist& operator=(const Typist&) = delete;
  ~Typist();

  /// A key goes down, by its X key code, and stays so until it is released.
  void press(std::uint8_t key);
  /// A key that is down goes up and down again, as its keyboard repeats it.
  void repeat(std::uint8_t key);
  /// A key that is not down is left alone.
  void release(std::uint8_t key);
  [[nodiscard]] bool isDown(std::uint8_t key) const { return down_[key]; }
  void releaseAll();

  /// Types what the program posts, all at once: keys as keys, texts character by character in the
  /// layout that has it. Modifiers that are held are released meanwhile. The layout is in the end
  /// what it was. Where something is erased, the application is waited for; see `Pace`.
  void type(const std::vector<X11Event>& events);

 private:
  using Clock = std::chrono::steady_clock;

  /// The key goes down or up in so many milliseconds, and whatever comes behind it later.
  void post(std::uint8_t key, bool isDown, unsigned long delay = 0);
  /// Milliseconds to leave before a key goes down, so that nobody takes it for a repetition.
  [[nodiscard]] unsigned long delayBefore(std::uint8_t key) const;
  void keepPace();
  void tap(std::uint8_t key);
  void typeText(std::u16string_view units, unsigned group);
  void typeCharacter(char32_t character, unsigned group);
  /// The modifiers that were down.
  [[nodiscard]] std::vector<std::uint8_t> releaseModifiers();
  void holdAgain(std::vector<std::uint8_t>& held);
  /// A modifier that goes down and up alone means something to many applications: Alt opens the
  /// menu. With any key between, even one that gives nothing, it does not.
  void tapNothing();
  void mapMissing(const std::vector<X11Event>& events, unsigned group);
  void mapSpare(const std::u32string& characters);
  void clearSpareLater();
  void clearSpare();

  XConnection& connection_;
  Layouts& layouts_;
  platform::RunLoop& runLoop_;
  Pace pace_;
  std::bitset<256> down_;
  /// When each key went up last, and when the application last said that it had taken every key.
  std::array<Clock::time_point, 256> released_{};
  Clock::time_point taken_;
  /// Characters that no layout has, and the spare keys that give them for a while.
  std::map<char32_t, std::uint8_t> spare_;
  /// Tells the last call for clearing from those before.
  std::uint64_t spareUse_ = 0;
};

}  // namespace tessarok::x11

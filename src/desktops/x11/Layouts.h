#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desktops/x11/KeyboardState.h"
#include "desktops/x11/Keymap.h"
#include "desktops/x11/XConnection.h"
#include "platform/InputSources.h"

union _XEvent;

namespace tessarok::x11 {

/// The keyboard's layouts and its state. Main thread.
///
/// Why the state is asked for: a synthetic key takes effect in the server at once, but the news of
/// it comes when later keys have already been read. So whenever something may have changed the
/// state, the next one who needs it asks the server, which costs one round trip.
class Layouts final : public platform::InputSources {
 public:
  /// `connection` outlives this object. Throws `std::runtime_error` when the server has no keymap.
  explicit Layouts(XConnection& connection);

  std::vector<std::shared_ptr<platform::InputSourceHandle>> enabledLayouts() override;
  const std::optional<std::string>& current() override;
  bool select(platform::InputSourceHandle& source) override;

  /// Up to date with every request made so far.
  [[nodiscard]] const KeyboardState& state();
  [[nodiscard]] const Keymap& keymap();
  /// Something was posted that may have changed the state.
  void markStateStale() { isStateStale_ = true; }
  /// Makes a group the one in effect, without telling anybody.
  void lockGroup(unsigned group);
  /// Tells of everything that has changed since the last time.
  void announceChanges();
  /// A number that grows whenever keys give other characters.
  [[nodiscard]] std::uint32_t generation();

  void handleXkb(const _XEvent& event);
  /// A property of the root window has changed. The names of layouts are one, and they come after
  /// the layouts themselves.
  void handleProperty(const _XEvent& event);
  void markKeymapStale() { isKeymapStale_ = true; }

  /// The current layout is another; the list of layouts, or what they give, is another.
  std::function<void()> onSelected;
  std::function<void()> onEnabledChanged;
  /// The server has another keymap, which grabbed keyboards do not get by themselves.
  std::function<void()> onKeymapChanged;
  /// Repeat rates and the like are others.
  std::function<void()> onControlsChanged;

 private:
  class Handle;

  void readKeymap();

  XConnection& connection_;
  unsigned long rulesNames_;
  std::shared_ptr<const Keymap> keymap_;
  KeyboardState state_;
  bool isStateStale_ = true;
  bool isKeymapStale_ = false;
  bool hasNewLayouts_ = false;
  std::uint32_t generation_ = 1;
  /// What observers believe to be current.
  std::optional<std::string> announced_;
};

}  // namespace tessarok::x11

#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "desktops/xkb/LayoutNames.h"
#include "typing/KeyCodes.h"

struct xkb_keymap;
struct xkb_state;

namespace tessarok::inputmethod {

/// What the keys of one XKB layout give. Input methods hand their keymaps to nobody, so the
/// layout is compiled from its name as they do. Main thread.
class XkbLayout final {
 public:
  /// Null when the system has no such layout. Compiling takes milliseconds; each layout is
  /// compiled once.
  [[nodiscard]] static std::shared_ptr<const XkbLayout> named(
      const xkb::layoutNames::Layout& layout);

  ~XkbLayout();
  XkbLayout(const XkbLayout&) = delete;
  XkbLayout& operator=(const XkbLayout&) = delete;

  /// What a hardware key shows with or without Shift, dead keys as plain characters. The key
  /// beside the left Shift shows nothing when it only repeats what other keys give.
  [[nodiscard]] std::u16string shown(KeyCode code, bool shift) const;
  /// The symbol of a key (an X key code) under these modifiers.
  [[nodiscard]] std::uint32_t symbol(std::uint32_t xKey, std::uint32_t states) const;

 private:
  explicit XkbLayout(xkb_keymap* keymap);

  xkb_keymap* keymap_;
  /// Where questions are worked out; holds nothing between two of them.
  xkb_state* scratch_;
};

}  // namespace tessarok::inputmethod

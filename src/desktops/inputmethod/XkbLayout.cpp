#include "desktops/inputmethod/XkbLayout.h"

#include <map>
#include <utility>
#include <xkbcommon/xkbcommon.h>

#include "desktops/xkb/ShownKeys.h"

namespace tessarok::inputmethod {

namespace {

using xkb::layoutNames::Layout;

/// Shift, Lock, Control and Mod1 to Mod5: the real modifiers have the same bits everywhere.
constexpr std::uint32_t kRealModifiers = 0xFF;
constexpr std::uint32_t kLocks = 0x12;

xkb_keymap* compile(const Layout& layout) {
  auto* context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
  if (context == nullptr) return nullptr;
  // A name that is none is an answer here, not an error to report.
  xkb_context_set_log_level(context, XKB_LOG_LEVEL_CRITICAL);
  const xkb_rule_names names{.rules = "evdev",
                             .model = "pc105",
                             .layout = layout.name.c_str(),
                             .variant = layout.variant.c_str(),
                             .options = ""};
  auto* keymap = xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
  // The keymap keeps the context as long as it needs it.
  xkb_context_unref(context);
  return keymap;
}

}  // namespace

std::shared_ptr<const XkbLayout> XkbLayout::named(const Layout& layout) {
  static std::map<std::pair<std::string, std::string>, std::shared_ptr<const XkbLayout>> known;
  const auto [entry, isNew] = known.try_emplace({layout.name, layout.variant});
  if (!isNew) return entry->second;
  if (auto* keymap = compile(layout)) entry->second.reset(new XkbLayout(keymap));
  return entry->second;
}

XkbLayout::XkbLayout(xkb_keymap* keymap) : keymap_(keymap), scratch_(xkb_state_new(keymap)) {}

XkbLayout::~XkbLayout() {
  xkb_state_unref(scratch_);
  xkb_keymap_unref(keymap_);
}

std::u16string XkbLayout::shown(KeyCode code, bool shift) const {
  return xkb::shownKeys::shown(*scratch_, code, shift, 0);
}

std::uint32_t XkbLayout::symbol(std::uint32_t xKey, std::uint32_t states) const {
  const auto modifiers = states & kRealModifiers;
  xkb_state_update_mask(scratch_, modifiers & ~kLocks, 0, modifiers & kLocks, 0, 0, 0);
  return xkb_state_key_get_one_sym(scratch_, xKey);
}

}  // namespace tessarok::inputmethod

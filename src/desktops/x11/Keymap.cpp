#include "desktops/x11/Keymap.h"

// Xlib-xcb must come before the names that Xlib defines as macros are of any use to others.
#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xlib-xcb.h>
#include <X11/Xlib.h>
#include <X11/extensions/XKBgeom.h>
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <linux/input-event-codes.h>
#include <string_view>
#include <utility>
#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#include "desktops/xkb/HardwareKeys.h"
#include "desktops/xkb/LayoutNames.h"
#include "desktops/xkb/NumberPad.h"
#include "desktops/xkb/ShownKeys.h"
#include "text/Text.h"

namespace tessarok::x11 {

namespace {

constexpr KeyCode kLastSignedKey = 50;

std::string rulesNames(Display* display, Window root) {
  const Atom property = XInternAtom(display, "_XKB_RULES_NAMES", True);
  if (property == 0) return {};
  constexpr long kLongest = 1024;
  Atom type = 0;
  int format = 0;
  unsigned long count = 0;
  unsigned long rest = 0;
  unsigned char* data = nullptr;
  std::string text;
  if (XGetWindowProperty(display, root, property, 0, kLongest, False, XA_STRING, &type, &format,
                         &count, &rest, &data) == Success &&
      data != nullptr && format == 8) {
    text.assign(reinterpret_cast<const char*>(data), count);
  }
  if (data != nullptr) XFree(data);
  return text;
}

bool hasKey(XkbGeometryPtr geometry, std::string_view name) {
  for (int s = 0; s < geometry->num_sections; ++s) {
    const auto& section = geometry->sections[s];
    for (int r = 0; r < section.num_rows; ++r) {
      const auto& row = section.rows[r];
      for (int k = 0; k < row.num_keys; ++k) {
        const char* bytes = row.keys[k].name.name;
        if (std::string_view(bytes, strnlen(bytes, XkbKeyNameLength)) == name) return true;
      }
    }
  }
  return false;
}

/// By the drawing of the keyboard that comes with the keymap. Without one the key beside the left
/// Shift is taken to be there, as it is on most keyboards sold.
platform::PhysicalLayoutType shapeOf(Display* display) {
  using Type = platform::PhysicalLayoutType;
  auto* description = XkbAllocKeyboard();
  if (description == nullptr) return Type::iso;
  description->device_spec = XkbUseCoreKbd;
  auto type = Type::iso;
  if (XkbGetGeometry(display, description) == Success && description->geom != nullptr &&
      description->geom->num_sections > 0) {
    if (hasKey(description->geom, "HZTG") || hasKey(description->geom, "HENK")) {
      type = Type::jis;
    } else if (!hasKey(description->geom, "LSGT")) {
      type = Type::ansi;
    }
  }
  XkbFreeKeyboard(description, XkbAllComponentsMask, True);
  return type;
}

}  // namespace

std::shared_ptr<const Keymap> Keymap::read(XConnection& connection) {
  if (connection.isLost()) return nullptr;
  auto* server = XGetXCBConnection(connection.display());
  auto* context = xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES);
  if (context == nullptr) return nullptr;
  // Whoever asks for the keymap says that there is none.
  xkb_context_set_log_level(context, XKB_LOG_LEVEL_CRITICAL);
  const auto device = xkb_x11_get_core_keyboard_device_id(server);
  auto* keymap = device < 0 ? nullptr
                            : xkb_x11_keymap_new_from_device(context, server, device,
                                                             XKB_KEYMAP_COMPILE_NO_FLAGS);
  // The keymap keeps the context as long as it needs it.
  xkb_context_unref(context);
  if (keymap == nullptr) return nullptr;
  std::shared_ptr<Keymap> result(new Keymap(keymap));
  if (connection.isLost()) return nullptr;
  result->nameGroups(connection);
  result->physicalLayout_ = shapeOf(connection.display());
  result->findModifierKeys();
  result->findSpareKeys();
  result->sign();
  return result;
}

Keymap::Keymap(xkb_keymap* keymap) : keymap_(keymap), scratch_(xkb_state_new(keymap)) {}

Keymap::~Keymap() {
  xkb_state_unref(scratch_);
  xkb_keymap_unref(keymap_);
}

const std::optional<std::string>& Keymap::optionalIdentifier(unsigned group) const {
  static const std::optional<std::string> kNone;
  return group < identifiers_.size() ? identifiers_[group] : kNone;
}

std::string Keymap::source() const {
  auto* text = xkb_keymap_get_as_string(keymap_, XKB_KEYMAP_FORMAT_TEXT_V1);
  std::string source = text == nullptr ? "" : text;
  std::free(text);
  return source;
}

unsigned Keymap::layoutsOfLetters() const {
  constexpr std::pair<unsigned, unsigned> kRows[] = {
      {KEY_Q, KEY_P}, {KEY_A, KEY_L}, {KEY_Z, KEY_M}};
  unsigned fewest = xkb_keymap_num_layouts(keymap_);
  for (const auto& [first, last] : kRows) {
    for (unsigned key = first; key <= last; ++key) {
      fewest = std::min(fewest,
                        xkb_keymap_num_layouts_for_key(keymap_, key + xkb::hardwareKeys::kXOffset));
    }
  }
  return fewest;
}

void Keymap::nameGroups(XConnection& connection) {
  const auto layouts =
      xkb::layoutNames::fromRules(rulesNames(connection.display(), connection.root()));
  const unsigned count = xkb_keymap_num_layouts(keymap_);
  // A keymap that was not made from rules leaves those of the last one behind.
  const bool fits = layoutsOfLetters() <= layouts.size() && layouts.size() <= count;
  for (unsigned group = 0; group < count; ++group) {
    if (fits && group < layouts.size()) {
      identifiers_.emplace_back(xkb::layoutNames::identifierOf(layouts[group]));
      names_.push_back(xkb::layoutNames::nameOf(layouts[group]));
      continue;
    }
    const char* name = xkb_keymap_layout_get_name(keymap_, group);
    names_.emplace_back(name == nullptr ? "" : name);
    identifiers_.emplace_back(xkb::layoutNames::identifierOfName(names_.back()));
  }
}

std::uint32_t Keymap::firstSymbol(std::uint8_t key) const {
  const xkb_keysym_t* symbols = nullptr;
  const int count = xkb_keymap_key_get_syms_by_level(keymap_, key, 0, 0, &symbols);
  return count == 1 ? symbols[0] : std::uint32_t{XKB_KEY_NoSymbol};
}

std::uint8_t Keymap::keyWith(std::uint32_t symbol) const {
  for (auto key = xkb_keymap_min_keycode(keymap_); key <= xkb_keymap_max_keycode(keymap_); ++key) {
    if (key <= 0xFF && firstSymbol(static_cast<std::uint8_t>(key)) == symbol) {
      return static_cast<std::uint8_t>(key);
    }
  }
  return 0;
}

unsigned Keymap::modifiersOf(std::uint8_t key) const {
  set({});
  xkb_state_update_key(scratch_, key, XKB_KEY_DOWN);
  const auto modifiers = xkb_state_serialize_mods(scratch_, XKB_STATE_MODS_DEPRESSED);
  xkb_state_update_key(scratch_, key, XKB_KEY_UP);
  return modifiers & 0xFFu;
}

void Keymap::findModifierKeys() {
  shiftKey_ = keyWith(XKB_KEY_Shift_L);
  if (shiftKey_ == 0) shiftKey_ = keyWith(XKB_KEY_Shift_R);
  levelThreeKey_ = keyWith(XKB_KEY_ISO_Level3_Shift);
  if (levelThreeKey_ != 0) levelThreeModifiers_ = modifiersOf(levelThreeKey_);
}

void Keymap::findSpareKeys() {
  for (unsigned key = xkb_keymap_min_keycode(keymap_); key <= xkb_keymap_max_keycode(keymap_);
       ++key) {
    if (key > 0xFF) return;
    if (xkb_keymap_num_layouts_for_key(keymap_, key) == 0) {
      spareKeys_.push_back(static_cast<std::uint8_t>(key));
    }
  }
}

void Keymap::sign() {
  for (unsigned group = 0; group < groups(); ++group) {
    for (const char byte : identifier(group))
      signature_ += static_cast<unsigned char>(byte);
    for (KeyCode code = 0; code <= kLastSignedKey; ++code) {
      signature_ += u'\n' + shown(code, false, group) + u'\t' + shown(code, true, group);
    }
  }
}

void Keymap::set(const KeyboardState& state) const {
  xkb_state_update_mask(scratch_, state.baseModifiers, state.latchedModifiers,
                        state.lockedModifiers, state.baseGroup, state.latchedGroup,
                        state.lockedGroup);
}

void Keymap::text(std::uint8_t key, const KeyboardState& state, std::u16string& units) const {
  units.clear();
  set(state);
  char utf8[64];
  const int size = xkb_state_key_get_utf8(scratch_, key, utf8, sizeof utf8);
  if (size <= 0) return;
  // One symbol is one scalar, and all keys of all layouts but a few carry one symbol.
  if (const auto scalar = xkb_state_key_get_utf32(scratch_, key); scalar != 0) {
    return text::appendScalar(scalar, units);
  }
  const xkb_keysym_t* symbols = nullptr;
  const int count = xkb_state_key_get_syms(scratch_, key, &symbols);
  for (int i = 0; i < count; ++i) {
    if (const auto scalar = xkb_keysym_to_utf32(symbols[i]); scalar != 0) {
      text::appendScalar(scalar, units);
    }
  }
}

std::u16string Keymap::shown(KeyCode code, bool shift, unsigned group) const {
  return xkb::shownKeys::shown(*scratch_, code, shift, group);
}

bool Keymap::changesState(std::uint8_t key, const KeyboardState& state) const {
  if (xkb::hardwareKeys::codeOf(key) == keyCodes::space) return false;
  set(state);
  const auto symbol = xkb_state_key_get_one_sym(scratch_, key);
  const bool isModifier = symbol >= XKB_KEY_Shift_L && symbol <= XKB_KEY_Hyper_R;
  const bool isIso = symbol >= XKB_KEY_ISO_Lock && symbol <= XKB_KEY_ISO_Level5_Lock;
  return isModifier || isIso || symbol == XKB_KEY_Mode_switch || symbol == XKB_KEY_Num_Lock ||
         symbol == XKB_KEY_Scroll_Lock;
}

bool Keymap::isHeldModifier(std::uint8_t key) const {
  switch (const auto symbol = firstSymbol(key)) {
    case XKB_KEY_ISO_Level3_Shift:
    case XKB_KEY_ISO_Level5_Shift:
    case XKB_KEY_Mode_switch:
      return true;
    case XKB_KEY_Caps_Lock:
    case XKB_KEY_Shift_Lock:
      return false;
    default:
      return symbol >= XKB_KEY_Shift_L && symbol <= XKB_KEY_Hyper_R;
  }
}

std::optional<KeyCode> Keymap::caretMover(std::uint8_t key, const KeyboardState& state) const {
  set(state);
  return xkb::caretMoverOfNumberPad(xkb_state_key_get_one_sym(scratch_, key));
}

std::optional<Keymap::Stroke> Keymap::strokeFor(char32_t character, unsigned preferredGroup,
                                                unsigned lockedModifiers) const {
  const auto& all = strokes(lockedModifiers);
  if (const auto found = all.find({preferredGroup, character}); found != all.end()) {
    return found->second;
  }
  for (unsigned group = 0; group < groups(); ++group) {
    if (const auto found = all.find({group, character}); found != all.end()) return found->second;
  }
  return std::nullopt;
}

const Keymap::Strokes& Keymap::strokes(unsigned lockedModifiers) const {
  const auto [entry, isNew] = strokes_.try_emplace(lockedModifiers);
  if (!isNew) return entry->second;
  for (const bool levelThree : {false, true}) {
    for (const bool shift : {false, true}) {
      if ((shift && shiftKey_ == 0) || (levelThree && levelThreeKey_ == 0)) continue;
      collect(entry->second, lockedModifiers, shift, levelThree);
    }
  }
  return entry->second;
}

void Keymap::collect(Strokes& strokes, unsigned lockedModifiers, bool shift,
                     bool levelThree) const {
  const unsigned held =
      (shift ? unsigned{ShiftMask} : 0u) | (levelThree ? levelThreeModifiers_ : 0u);
  for (unsigned group = 0; group < groups(); ++group) {
    set({.baseModifiers = held, .lockedModifiers = lockedModifiers, .lockedGroup = group});
    for (unsigned key = xkb_keymap_min_keycode(keymap_); key <= xkb_keymap_max_keycode(keymap_);
         ++key) {
      if (key > 0xFF) break;
      const auto character = xkb_state_key_get_utf32(scratch_, key);
      if (character == 0) continue;
      strokes.try_emplace({group, character},
                          Stroke{static_cast<std::uint8_t>(key), group, shift, levelThree});
    }
  }
}

}  // namespace tessarok::x11

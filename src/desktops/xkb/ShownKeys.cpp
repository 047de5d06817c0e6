#include "desktops/xkb/ShownKeys.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

#include "desktops/xkb/HardwareKeys.h"
#include "text/Text.h"

namespace tessarok::xkb::shownKeys {

namespace {

constexpr KeyCode kLastShownKey = 50;
/// The real modifiers have the same bits in every keymap.
constexpr std::uint32_t kShift = 0x01;

/// What a dead key shows. Others show nothing.
char32_t plainForm(xkb_keysym_t symbol) {
  switch (symbol) {
    case XKB_KEY_dead_grave:
      return U'`';
    case XKB_KEY_dead_acute:
      return U'\'';
    case XKB_KEY_dead_circumflex:
      return U'^';
    case XKB_KEY_dead_tilde:
      return U'~';
    case XKB_KEY_dead_diaeresis:
      return U'"';
    default:
      return 0;
  }
}

char32_t characterOf(xkb_state& scratch, std::uint8_t xKey, bool shift, std::uint32_t group) {
  xkb_state_update_mask(&scratch, shift ? kShift : 0, 0, 0, 0, 0, group);
  const auto symbol = xkb_state_key_get_one_sym(&scratch, xKey);
  const auto scalar = xkb_keysym_to_utf32(symbol);
  return scalar != 0 ? scalar : plainForm(symbol);
}

/// Whether another key shows this character as well.
bool isShownElsewhere(xkb_state& scratch, char32_t character, KeyCode code, std::uint32_t group) {
  for (KeyCode other = 0; other <= kLastShownKey; ++other) {
    const auto xKey = hardwareKeys::xKeyOf(other);
    if (other == code || xKey == 0) continue;
    if (characterOf(scratch, xKey, false, group) == character) return true;
    if (characterOf(scratch, xKey, true, group) == character) return true;
  }
  return false;
}

}  // namespace

std::u16string shown(xkb_state& scratch, KeyCode code, bool shift, std::uint32_t group) {
  const auto xKey = hardwareKeys::xKeyOf(code);
  if (xKey == 0) return {};
  const auto character = characterOf(scratch, xKey, shift, group);
  if (character == 0) return {};
  // In most layouts the key beside the left Shift only repeats characters of others. Taken for a
  // place of their own, they would be of two places, and be converted to nothing at all.
  const bool mayRepeat = code == keyCodes::isoSection;
  if (mayRepeat && isShownElsewhere(scratch, character, code, group)) return {};
  std::string spelled;
  text::appendScalar(character, spelled);
  return text::utf16(spelled);
}

}  // namespace tessarok::xkb::shownKeys

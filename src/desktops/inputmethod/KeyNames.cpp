#include "desktops/inputmethod/KeyNames.h"

#include <optional>
#include <xkbcommon/xkbcommon.h>

#include "desktops/xkb/HardwareKeys.h"
#include "desktops/xkb/NumberPad.h"
#include "platform/EventFlags.h"
#include "text/Text.h"

namespace tessarok::inputmethod::keyNames {

namespace {

namespace eventFlags = platform::eventFlags;
namespace hardwareKeys = xkb::hardwareKeys;

/// The keys that a program may send without a key code.
std::optional<KeyCode> codeWithoutKey(std::uint32_t symbol) {
  switch (symbol) {
    case XKB_KEY_BackSpace:
      return keyCodes::backspace;
    case XKB_KEY_Tab:
    case XKB_KEY_ISO_Left_Tab:
      return keyCodes::tab;
    case XKB_KEY_Return:
      return keyCodes::returnKey;
    case XKB_KEY_KP_Enter:
      return keyCodes::enter;
    case XKB_KEY_Escape:
      return keyCodes::escape;
    case XKB_KEY_space:
      return keyCodes::space;
    case XKB_KEY_Delete:
      return keyCodes::forwardDelete;
    case XKB_KEY_Home:
      return keyCodes::home;
    case XKB_KEY_Left:
      return keyCodes::left;
    case XKB_KEY_Up:
      return keyCodes::up;
    case XKB_KEY_Right:
      return keyCodes::right;
    case XKB_KEY_Down:
      return keyCodes::down;
    case XKB_KEY_Page_Up:
      return keyCodes::pageUp;
    case XKB_KEY_Page_Down:
      return keyCodes::pageDown;
    case XKB_KEY_End:
      return keyCodes::end;
    default:
      return std::nullopt;
  }
}

}  // namespace

KeyCode codeOf(const Key& key) {
  constexpr int kKeys = 256;
  if (const auto code = xkb::caretMoverOfNumberPad(key.symbol)) return *code;
  if (key.code > 0 && key.code < kKeys) {
    return hardwareKeys::codeOf(static_cast<std::uint8_t>(key.code));
  }
  return codeWithoutKey(key.symbol).value_or(hardwareKeys::kNoKey);
}

std::uint64_t flagsOf(std::uint32_t states) {
  const auto has = [states](std::uint32_t mask) { return (states & mask) != 0; };
  std::uint64_t flags = 0;
  if (has(keyStates::shift)) flags |= eventFlags::shift;
  if (has(keyStates::capsLock)) flags |= eventFlags::capsLock;
  if (has(keyStates::control)) flags |= eventFlags::control;
  if (has(keyStates::alt)) flags |= eventFlags::option;
  // Where Meta shares a key with Alt, toolkits report both.
  const bool isMeta = has(keyStates::meta) && !has(keyStates::alt);
  const auto command = keyStates::super | keyStates::superToo | keyStates::mod3 | keyStates::hyper;
  if (isMeta || has(command)) flags |= eventFlags::command;
  return flags;
}

bool isPrintable(const Key& key) {
  constexpr std::uint32_t kDelete = 0x7F;
  const auto scalar = xkb_keysym_to_utf32(key.symbol);
  return scalar >= U' ' && scalar != kDelete;
}

std::u16string payloadOf(const Key& key) {
  const auto scalar = xkb_keysym_to_utf32(key.symbol);
  if (scalar == 0) return {};
  std::string spelled;
  text::appendScalar(scalar, spelled);
  return text::utf16(spelled);
}

std::string textOf(const Key& key) {
  std::string spelled;
  if (isPrintable(key)) text::appendScalar(xkb_keysym_to_utf32(key.symbol), spelled);
  return spelled;
}

bool isModifier(const Key& key) {
  const auto symbol = key.symbol;
  return (symbol >= XKB_KEY_Shift_L && symbol <= XKB_KEY_Hyper_R) ||
         (symbol >= XKB_KEY_ISO_Lock && symbol <= XKB_KEY_ISO_Level5_Lock) ||
         symbol == XKB_KEY_Mode_switch || symbol == XKB_KEY_Num_Lock ||
         symbol == XKB_KEY_Scroll_Lock;
}

}  // namespace tessarok::inputmethod::keyNames

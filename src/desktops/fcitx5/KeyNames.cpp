#include "desktops/fcitx5/KeyNames.h"

#include <optional>

#include "desktops/xkb/HardwareKeys.h"
#include "platform/EventFlags.h"
#include "text/Text.h"

namespace tessarok::fcitx5::keyNames {

namespace {

using fcitx::KeyState;
using fcitx::KeyStates;
namespace eventFlags = platform::eventFlags;
namespace hardwareKeys = xkb::hardwareKeys;

/// The keys of the number pad that move the caret, and those that a program may send without a key
/// code.
std::optional<KeyCode> codeOfSymbol(fcitx::KeySym symbol) {
  switch (symbol) {
    case FcitxKey_KP_Home:
      return keyCodes::home;
    case FcitxKey_KP_Left:
      return keyCodes::left;
    case FcitxKey_KP_Up:
      return keyCodes::up;
    case FcitxKey_KP_Right:
      return keyCodes::right;
    case FcitxKey_KP_Down:
      return keyCodes::down;
    case FcitxKey_KP_Page_Up:
      return keyCodes::pageUp;
    case FcitxKey_KP_Page_Down:
      return keyCodes::pageDown;
    case FcitxKey_KP_End:
      return keyCodes::end;
    case FcitxKey_KP_Delete:
      return keyCodes::forwardDelete;
    default:
      return std::nullopt;
  }
}

std::optional<KeyCode> codeWithoutKey(fcitx::KeySym symbol) {
  switch (symbol) {
    case FcitxKey_BackSpace:
      return keyCodes::backspace;
    case FcitxKey_Tab:
    case FcitxKey_ISO_Left_Tab:
      return keyCodes::tab;
    case FcitxKey_Return:
      return keyCodes::returnKey;
    case FcitxKey_KP_Enter:
      return keyCodes::enter;
    case FcitxKey_Escape:
      return keyCodes::escape;
    case FcitxKey_space:
      return keyCodes::space;
    case FcitxKey_Delete:
      return keyCodes::forwardDelete;
    case FcitxKey_Home:
      return keyCodes::home;
    case FcitxKey_Left:
      return keyCodes::left;
    case FcitxKey_Up:
      return keyCodes::up;
    case FcitxKey_Right:
      return keyCodes::right;
    case FcitxKey_Down:
      return keyCodes::down;
    case FcitxKey_Page_Up:
      return keyCodes::pageUp;
    case FcitxKey_Page_Down:
      return keyCodes::pageDown;
    case FcitxKey_End:
      return keyCodes::end;
    default:
      return std::nullopt;
  }
}

}  // namespace

KeyCode codeOf(const fcitx::Key& key) {
  constexpr int kKeys = 256;
  if (const auto code = codeOfSymbol(key.sym())) return *code;
  if (key.code() > 0 && key.code() < kKeys) {
    return hardwareKeys::codeOf(static_cast<std::uint8_t>(key.code()));
  }
  return codeWithoutKey(key.sym()).value_or(hardwareKeys::kNoKey);
}

std::uint64_t flagsOf(KeyStates states) {
  std::uint64_t flags = 0;
  if (states.test(KeyState::Shift)) flags |= eventFlags::shift;
  if (states.test(KeyState::CapsLock)) flags |= eventFlags::capsLock;
  if (states.test(KeyState::Ctrl)) flags |= eventFlags::control;
  if (states.test(KeyState::Alt)) flags |= eventFlags::option;
  const KeyStates command{KeyState::Super, KeyState::Super2, KeyState::Hyper, KeyState::Hyper2};
  // Where Meta shares a key with Alt, toolkits report both.
  const bool isMeta = states.test(KeyState::Meta) && !states.test(KeyState::Alt);
  if (isMeta || states.testAny(command)) flags |= eventFlags::command;
  return flags;
}

bool isPrintable(const fcitx::Key& key) {
  constexpr std::uint32_t kDelete = 0x7F;
  const auto scalar = fcitx::Key::keySymToUnicode(key.sym());
  return scalar >= U' ' && scalar != kDelete;
}

std::u16string payloadOf(const fcitx::Key& key) {
  const auto scalar = fcitx::Key::keySymToUnicode(key.sym());
  if (scalar == 0) return {};
  std::string spelled;
  text::appendScalar(scalar, spelled);
  return text::utf16(spelled);
}

bool isModifier(const fcitx::Key& key) {
  if (key.isModifier()) return true;
  const auto symbol = key.sym();
  return (symbol >= FcitxKey_Shift_L && symbol <= FcitxKey_Hyper_R) ||
         (symbol >= FcitxKey_ISO_Lock && symbol <= FcitxKey_ISO_Level5_Lock) ||
         symbol == FcitxKey_Mode_switch || symbol == FcitxKey_Num_Lock ||
         symbol == FcitxKey_Scroll_Lock;
}

}  // namespace tessarok::fcitx5::keyNames

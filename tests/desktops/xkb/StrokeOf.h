#pragma once

#include <stdexcept>

#include "desktops/layouts/KeyTable.h"
#include "typing/KeyCodes.h"

namespace tessarok::testing {

/// The key, with or without Shift, that gives a character on a US keyboard. "\n", "\t" and "\b" are
/// Return, Tab and Backspace. Throws when there is none.
inline layouts::KeyTable::Stroke strokeOf(char character) {
  switch (character) {
    case '\n':
      return {keyCodes::returnKey, false};
    case '\t':
      return {keyCodes::tab, false};
    case '\b':
      return {keyCodes::backspace, false};
    case ' ':
      return {keyCodes::space, false};
    default:
      break;
  }
  const auto byte = static_cast<unsigned char>(character);
  const auto stroke = layouts::KeyTable::english().strokeFor(byte);
  if (!stroke || byte >= 0x80) throw std::runtime_error("no key types this");
  return *stroke;
}

}  // namespace tessarok::testing

#include "desktops/terminal/InputItem.h"

#include "text/Text.h"

namespace tessarok::terminal {

bool InputItem::isLetterOrNumber() const {
  return kind == Kind::character && (text::isLetter(bytes) || text::isNumber(bytes));
}

bool InputItem::isReturn() const {
  return (kind == Kind::control && (scalar == '\r' || scalar == '\n')) ||
         (kind == Kind::sequence && bytes == "\x1bOM");
}

bool InputItem::endsLine() const {
  if (kind == Kind::paste) return bytes.find_first_of("\r\n") != std::string_view::npos;
  if (isReturn() || bytes == "\x1b[13u") return true;
  constexpr std::u32string_view kEnds = U"\x03\x04\x1a\x1c";
  return kind == Kind::control && kEnds.find(scalar) != std::u32string_view::npos;
}

}  // namespace tessarok::terminal

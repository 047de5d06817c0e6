#include "commands/Input.h"

#include <array>
#include <cstdio>
#include <iostream>

#include "commands/CommandError.h"
#include "desktops/posix/Translation.h"
#include "text/Text.h"

namespace tessarok::commands {

std::string readStandardInput() {
  std::string text;
  std::array<char, 65536> piece;
  do {
    std::cin.read(piece.data(), piece.size());
    text.append(piece.data(), static_cast<std::size_t>(std::cin.gcount()));
  } while (std::cin);
  requireFullyRead(std::cin, posix::translated("standard input"));
  requireUtf8(text, posix::translated("standard input"));
  return text;
}

void requireFullyRead(const std::istream& stream, const std::string& what) {
  // While it shares C's buffer, the standard stream takes an error for the end.
  const bool failed = stream.bad() || (&stream == &std::cin && std::ferror(stdin) != 0);
  if (failed) throw CommandError(posix::translated("cannot read {1}", {what}));
}

std::optional<std::size_t> lineWithoutUtf8(std::string_view text) {
  std::size_t number = 1;
  while (!text.empty()) {
    const auto end = text.find('\n');
    if (!text::isValidUtf8(text.substr(0, end))) return number;
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
    ++number;
  }
  return std::nullopt;
}

void requireUtf8(std::string_view text, std::string_view what) {
  if (!text::isValidUtf8(text))
    throw CommandError(posix::translated("{1} is not valid UTF-8", {std::string(what)}));
}

}  // namespace tessarok::commands

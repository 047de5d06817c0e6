#include "commands/Input.h"

#include <iostream>
#include <iterator>

#include "Text.h"
#include "commands/CommandError.h"

namespace tessarok::commands {

std::string readStandardInput() {
  std::string text{std::istreambuf_iterator<char>(std::cin), {}};
  if (std::cin.bad()) throw CommandError("standard input cannot be read");
  requireUtf8(text, "standard input");
  return text;
}

void requireUtf8(std::string_view text, std::string_view what) {
  if (!text::isValidUtf8(text)) throw CommandError(std::string(what) + " is not valid UTF-8");
}

}  // namespace tessarok::commands

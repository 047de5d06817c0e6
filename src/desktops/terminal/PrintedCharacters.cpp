#include "desktops/terminal/PrintedCharacters.h"

#include "text/Text.h"

namespace tessarok::terminal {

std::u32string printedCharacters(std::string_view bytes) {
  std::u32string characters;
  while (!bytes.empty()) {
    auto first = text::firstCharacter(bytes);
    bytes.remove_prefix(first.size());
    for (std::size_t size = 1; !first.empty(); ++size) {
      if (size > first.size()) return {};
      const auto scalar = text::singleScalar(first.substr(0, size));
      if (!scalar) continue;
      if (*scalar < 0x20 || *scalar == 0x7F) return {};
      characters.push_back(*scalar);
      first.remove_prefix(size);
      size = 0;
    }
  }
  return characters;
}

}  // namespace tessarok::terminal

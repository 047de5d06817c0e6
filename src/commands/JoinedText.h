#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessarok::commands {

/// The texts in their order with the separator between each two; empty for none.
[[nodiscard]] inline std::string joined(const std::vector<std::string>& texts,
                                        std::string_view separator) {
  std::string all;
  for (const auto& text : texts) {
    if (&text != &texts.front()) all += separator;
    all += text;
  }
  return all;
}

}  // namespace tessarok::commands

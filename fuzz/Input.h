#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

/// What the fuzzer calls, once for every input; the answer is always 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace tessarok::fuzz {

[[nodiscard]] inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// The pieces between line feeds. A text that ends with one has nothing behind it.
[[nodiscard]] inline std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const auto end = text.find('\n');
    lines.push_back(text.substr(0, end));
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
  }
  return lines;
}

}  // namespace tessarok::fuzz

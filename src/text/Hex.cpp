#include "text/Hex.h"

#include <cstddef>

namespace tessarok::text {

namespace {

constexpr std::string_view kDigits = "0123456789abcdef";
constexpr unsigned kBase = 16;

}  // namespace

std::string hexOf(std::string_view bytes) {
  std::string digits;
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    digits += kDigits[value / kBase];
    digits += kDigits[value % kBase];
  }
  return digits;
}

std::optional<std::string> bytesOfHex(std::string_view digits) {
  if (digits.size() % 2 != 0) return std::nullopt;
  std::string bytes;
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    const auto high = kDigits.find(digits[i]);
    const auto low = kDigits.find(digits[i + 1]);
    if (high == std::string_view::npos || low == std::string_view::npos) return std::nullopt;
    bytes += static_cast<char>(high * kBase + low);
  }
  return bytes;
}

}  // namespace tessarok::text

#include "Half.h"

#include <cstdint>

namespace tessarok::measure {

namespace {

std::uint64_t hashOf(std::string_view sentence) {
  // FNV-1a, written out: the halves must not change with the compiler's own hash.
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (const char byte : sentence) {
    hash ^= static_cast<unsigned char>(byte);
    hash *= 0x100000001B3U;
  }
  return hash;
}

}  // namespace

Half halfOf(std::string_view sentence) {
  // The low bits of this hash mix least.
  return ((hashOf(sentence) >> 40U) & 1U) == 0 ? Half::making : Half::judging;
}

bool isOfUnseenThird(std::string_view sentence) {
  // Other bits than those of the halves.
  return (hashOf(sentence) >> 41U) % 3 == 0;
}

std::optional<Half> halfNamed(const std::string& name) {
  if (name == "making") return Half::making;
  if (name == "judging") return Half::judging;
  return std::nullopt;
}

}  // namespace tessarok::measure

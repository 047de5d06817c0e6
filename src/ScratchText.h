#pragma once

#include <array>
#include <cstddef>
#include <memory_resource>
#include <string>

namespace tessarok {

/// Room on the stack for the few strings that one evaluation needs and then forgets, so that
/// typing allocates nothing. Longer texts spill to the heap.
class ScratchText {
 public:
  ScratchText() = default;
  ScratchText(const ScratchText&) = delete;
  ScratchText& operator=(const ScratchText&) = delete;

  /// An empty string with room for a word; it must not outlive this object.
  [[nodiscard]] std::pmr::string string() {
    std::pmr::string text(&arena_);
    text.reserve(kRoom);
    return text;
  }

 private:
  /// A tracked word has at most 64 Characters of up to 3 bytes.
  static constexpr std::size_t kRoom = 192;

  std::array<std::byte, 3 * (kRoom + 1)> storage_;
  std::pmr::monotonic_buffer_resource arena_{storage_.data(), storage_.size()};
};

}  // namespace tessarok

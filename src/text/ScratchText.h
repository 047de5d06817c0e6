#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <new>
#include <string>

namespace tessarok {

/// Room on the stack for the few strings that one evaluation needs and then forgets, so that
/// typing allocates nothing. Longer texts spill to the heap. With all of them there a decision
/// takes about a third longer, which alone would not be worth this: the promise is.
class ScratchText {
 public:
  /// Takes characters from the room of one `ScratchText`. The standard library has such an
  /// allocator too, but on macOS only from version 14 on.
  template <typename Value>
  class Allocator {
    static_assert(sizeof(Value) == 1, "the room is not aligned for more than characters");

   public:
    using value_type = Value;

    explicit Allocator(ScratchText& room) : room_(&room) {}
    template <typename Other>
    explicit Allocator(const Allocator<Other>& other) : room_(other.room()) {}

    [[nodiscard]] Value* allocate(std::size_t count) {
      return static_cast<Value*>(room_->allocate(count));
    }
    void deallocate(Value* values, std::size_t) noexcept { room_->deallocate(values); }
    [[nodiscard]] ScratchText* room() const { return room_; }
    friend bool operator==(const Allocator& a, const Allocator& b) { return a.room_ == b.room_; }

   private:
    ScratchText* room_;
  };
  using String = std::basic_string<char, std::char_traits<char>, Allocator<char>>;

  ScratchText() = default;
  ScratchText(const ScratchText&) = delete;
  ScratchText& operator=(const ScratchText&) = delete;

  /// An empty string with room for a word; it must not outlive this object.
  [[nodiscard]] String string() {
    String text{Allocator<char>(*this)};
    text.reserve(kRoom);
    return text;
  }

 private:
  /// A tracked word has at most 64 Characters of up to 3 bytes.
  static constexpr std::size_t kRoom = 192;

  void* allocate(std::size_t size) {
    if (size > storage_.size() - used_) return ::operator new(size);
    void* const place = storage_.data() + used_;
    used_ += size;
    return place;
  }
  /// The room itself comes back with the object.
  void deallocate(void* place) noexcept {
    const std::less<const void*> before;
    const bool isInside =
        !before(place, storage_.data()) && before(place, storage_.data() + storage_.size());
    if (!isInside) ::operator delete(place);
  }

  std::size_t used_ = 0;
  // Not initialised: every byte is written before it is read.
  std::array<std::byte, 3 * (kRoom + 1)> storage_;
};

}  // namespace tessarok

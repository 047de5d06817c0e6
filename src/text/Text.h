#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "text/ScratchText.h"

/// Text as a person sees it: UTF-8 strings, counted and cut in Characters. A Character is one
/// user-perceived character, an extended grapheme cluster, held as the slice of UTF-8 that spells
/// it. Every Unicode question goes to utf8proc. Pure functions, any thread.
///
/// Bytes that are not UTF-8 count as one Character each and belong to no class.
namespace tessarok::text {

/// Walks over the Characters of a text, each a view into it.
class Characters {
 public:
  class Iterator {
   public:
    using value_type = std::string_view;
    using difference_type = std::ptrdiff_t;

    Iterator() = default;
    explicit Iterator(std::string_view rest);
    std::string_view operator*() const { return rest_.substr(0, length_); }
    Iterator& operator++();
    void operator++(int) { ++*this; }
    bool operator==(const Iterator& other) const { return rest_.size() == other.rest_.size(); }

   private:
    std::string_view rest_;
    std::size_t length_ = 0;
  };

  explicit Characters(std::string_view text) : text_(text) {}
  [[nodiscard]] Iterator begin() const { return Iterator(text_); }
  [[nodiscard]] static Iterator end() { return Iterator(); }

 private:
  std::string_view text_;
};

/// Whether a predicate holds for every Character of a text; also for none.
template <typename Predicate>
[[nodiscard]] bool allCharacters(std::string_view text, const Predicate& predicate) {
  for (const auto character : Characters(text)) {
    if (!predicate(character)) return false;
  }
  return true;
}

[[nodiscard]] std::size_t count(std::string_view text);
/// The last Character; empty for an empty text.
[[nodiscard]] std::string_view lastCharacter(std::string_view text);
/// The first Character; empty for an empty text.
[[nodiscard]] std::string_view firstCharacter(std::string_view text);
/// The text without its last `n` Characters (empty when it has no more than that).
[[nodiscard]] std::string_view withoutLast(std::string_view text, std::size_t n);
/// The last `n` Characters (all of it when it has no more than that).
[[nodiscard]] std::string_view last(std::string_view text, std::size_t n);

/// The scalar of a Character that consists of just one; absent for every other.
[[nodiscard]] std::optional<char32_t> singleScalar(std::string_view character);

/// General category L*, judged by the first scalar.
[[nodiscard]] bool isLetter(std::string_view character);
/// General category N*, judged by the first scalar.
[[nodiscard]] bool isNumber(std::string_view character);
[[nodiscard]] bool isUppercase(std::string_view character);
[[nodiscard]] bool isLowercase(std::string_view character);
/// A letter that is a single scalar below 128.
[[nodiscard]] bool isAsciiLetter(std::string_view character);
/// General category Cc, judged by the first scalar.
[[nodiscard]] bool isControl(std::string_view character);
/// Control characters, white space and line breaks.
[[nodiscard]] bool isControlOrSpace(char32_t scalar);
/// The columns that a scalar takes in a terminal: 0, 1 or 2.
[[nodiscard]] int columns(char32_t scalar);

/// Full Unicode lower-casing without locale.
void appendLowercased(std::string_view text, ScratchText::String& out);
[[nodiscard]] std::string lowercased(std::string_view text);
/// Canonical composition (NFC), so that texts that look the same compare the same.
[[nodiscard]] std::string composed(std::string_view text);
/// Whether `composed` is known to change nothing, judged without doing it; false means unknown.
[[nodiscard]] bool isSurelyComposed(std::string_view text);
/// Without white space and line breaks at both ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);
/// How words are kept in every list: trimmed, lower-cased, composed.
[[nodiscard]] std::string normalizedWord(std::string_view text);

[[nodiscard]] bool isValidUtf8(std::string_view text);
void appendScalar(char32_t scalar, std::string& out);
void appendScalar(char32_t scalar, ScratchText::String& out);
void appendScalar(char32_t scalar, std::u16string& out);
/// The text in UTF-16 units.
[[nodiscard]] std::u16string utf16(std::string_view text);
/// Reads UTF-16 into `out`, replacing its content; a surrogate without its partner becomes the
/// replacement character.
void assignUtf16(std::u16string_view units, std::string& out);
/// The number of UTF-16 units that the text takes.
[[nodiscard]] std::size_t utf16Length(std::string_view text);

}  // namespace tessarok::text

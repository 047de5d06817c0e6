#include "text/Text.h"

#include <algorithm>
#include <optional>
#include <utf8proc.h>
#include <vector>

namespace tessarok::text {

namespace {

/// What stands for bytes that are not UTF-8: no scalar has this value.
constexpr char32_t kInvalid = 0xFFFFFFFF;
constexpr char32_t kReplacementCharacter = 0xFFFD;
constexpr char32_t kCapitalIWithDot = 0x130;
constexpr char32_t kCapitalSigma = 0x3A3;
constexpr char32_t kSmallFinalSigma = 0x3C2;
constexpr char32_t kCombiningDotAbove = 0x307;

struct Decoded {
  char32_t scalar = kInvalid;
  std::size_t length = 1;
};

Decoded decode(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  if (first < 0x80) return {first, 1};
  // Two bytes spell every Russian letter; a call for each costs a third of a decision.
  if (first >= 0xC2 && first <= 0xDF && text.size() > 1) {
    const auto second = static_cast<unsigned char>(text[1]);
    if ((second & 0xC0) != 0x80) return {};
    return {(static_cast<char32_t>(first) & 0x1F) << 6 | (second & 0x3Fu), 2};
  }
  utf8proc_int32_t scalar = -1;
  const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                       static_cast<utf8proc_ssize_t>(text.size()), &scalar);
  if (length < 1) return {};
  return {static_cast<char32_t>(scalar), static_cast<std::size_t>(length)};
}

/// Scalars that never join with one of their own kind: printable ASCII and the letters of the
/// Russian alphabet. They are nearly all that is typed, so most texts need no break rules.
bool neverJoins(char32_t scalar) {
  return (scalar >= 0x20 && scalar <= 0x7E) || (scalar >= 0x410 && scalar <= 0x44F) ||
         scalar == 0x401 || scalar == 0x451;
}

bool isPrintableAscii(char byte) {
  return byte >= 0x20 && byte <= 0x7E;
}

bool isAsciiLetter(char32_t scalar) {
  return (scalar >= U'a' && scalar <= U'z') || (scalar >= U'A' && scalar <= U'Z');
}

std::size_t firstCharacterLength(std::string_view text) {
  if (text.empty()) return 0;
  if (isPrintableAscii(text[0]) && (text.size() == 1 || isPrintableAscii(text[1]))) return 1;
  auto [previous, length] = decode(text);
  utf8proc_int32_t state = 0;
  while (length < text.size()) {
    const auto next = decode(text.substr(length));
    if (neverJoins(previous) && neverJoins(next.scalar)) return length;
    if (previous == kInvalid || next.scalar == kInvalid) return length;
    if (utf8proc_grapheme_break_stateful(static_cast<utf8proc_int32_t>(previous),
                                         static_cast<utf8proc_int32_t>(next.scalar), &state)) {
      return length;
    }
    previous = next.scalar;
    length += next.length;
  }
  return length;
}

/// Where the last scalar of a non-empty text starts; a byte that belongs to none is its own.
std::size_t lastScalarStart(std::string_view text) {
  std::size_t start = text.size() - 1;
  while (start > 0 && text.size() - start < 4 &&
         (static_cast<unsigned char>(text[start]) & 0xC0) == 0x80) {
    --start;
  }
  return decode(text.substr(start)).length == text.size() - start ? start : text.size() - 1;
}

/// Where the last Character of a non-empty text starts, if it and the scalar before it are of the
/// kind that never joins; absent when only reading from the start would tell.
std::optional<std::size_t> plainLastStart(std::string_view text) {
  const auto start = lastScalarStart(text);
  if (start == 0) return 0;
  const auto previousStart = lastScalarStart(text.substr(0, start));
  const bool isPlain = neverJoins(decode(text.substr(start)).scalar) &&
                       neverJoins(decode(text.substr(previousStart)).scalar);
  return isPlain ? std::optional(start) : std::nullopt;
}

/// Where the last `n` Characters start. They are found by counting all of them, once: where a
/// flag or a family begins shows only from the front, and asking anew for each of many would take
/// a time that grows with the square of the length.
std::size_t startOfLast(std::string_view text, std::size_t n) {
  const auto all = count(text);
  if (n >= all) return 0;
  std::size_t start = 0;
  for (auto skipped = all - n; skipped > 0; --skipped)
    start += firstCharacterLength(text.substr(start));
  return start;
}

utf8proc_category_t category(char32_t scalar) {
  if (scalar == kInvalid) return UTF8PROC_CATEGORY_CN;
  return utf8proc_category(static_cast<utf8proc_int32_t>(scalar));
}

char32_t firstScalar(std::string_view character) {
  return character.empty() ? kInvalid : decode(character).scalar;
}

bool isLetter(char32_t scalar) {
  // Of the scalars that never join those beyond ASCII are letters.
  if (neverJoins(scalar)) return scalar > 0x7F || isAsciiLetter(scalar);
  const auto c = category(scalar);
  return c >= UTF8PROC_CATEGORY_LU && c <= UTF8PROC_CATEGORY_LO;
}

bool isTrimmable(char32_t scalar) {
  if (scalar == kInvalid) return false;
  if ((scalar >= 0x09 && scalar <= 0x0D) || scalar == 0x85) return true;
  const auto c = category(scalar);
  return c == UTF8PROC_CATEGORY_ZS || c == UTF8PROC_CATEGORY_ZL || c == UTF8PROC_CATEGORY_ZP;
}

bool isCased(char32_t scalar) {
  const auto c = category(scalar);
  return c == UTF8PROC_CATEGORY_LU || c == UTF8PROC_CATEGORY_LL || c == UTF8PROC_CATEGORY_LT;
}

/// Scalars that do not end a word when looking for its last letter.
bool isCaseIgnorable(char32_t scalar) {
  switch (category(scalar)) {
    case UTF8PROC_CATEGORY_MN:
    case UTF8PROC_CATEGORY_ME:
    case UTF8PROC_CATEGORY_CF:
    case UTF8PROC_CATEGORY_LM:
    case UTF8PROC_CATEGORY_SK:
      return true;
    default:
      return scalar == U'\'' || scalar == U'.' || scalar == U':' || scalar == 0xB7 ||
             scalar == 0x2019;
  }
}

bool hasCasedBefore(std::string_view before) {
  while (!before.empty()) {
    const auto start = lastScalarStart(before);
    const auto scalar = decode(before.substr(start)).scalar;
    if (!isCaseIgnorable(scalar)) return isCased(scalar);
    before = before.substr(0, start);
  }
  return false;
}

bool hasCasedAfter(std::string_view after) {
  while (!after.empty()) {
    const auto [scalar, length] = decode(after);
    if (!isCaseIgnorable(scalar)) return isCased(scalar);
    after.remove_prefix(length);
  }
  return false;
}

template <typename String>
void appendUtf8(char32_t scalar, String& out) {
  if (scalar < 0x80) {
    out.push_back(static_cast<char>(scalar));
    return;
  }
  if (scalar < 0x800) {
    out.push_back(static_cast<char>(0xC0 | scalar >> 6));
    out.push_back(static_cast<char>(0x80 | (scalar & 0x3F)));
    return;
  }
  utf8proc_uint8_t bytes[4];
  const auto length = utf8proc_encode_char(static_cast<utf8proc_int32_t>(scalar), bytes);
  out.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
}

char32_t lower(char32_t scalar) {
  if (!neverJoins(scalar)) {
    return static_cast<char32_t>(utf8proc_tolower(static_cast<utf8proc_int32_t>(scalar)));
  }
  if (scalar == U'Ё') return U'ё';
  const bool isCapital = (scalar >= U'A' && scalar <= U'Z') || (scalar >= U'А' && scalar <= U'Я');
  return isCapital ? scalar + 0x20 : scalar;
}

/// Lower-casing maps scalar to scalar but for two letters: I with a dot keeps its dot, and a
/// sigma that ends a word has a form of its own.
template <typename String>
void appendLower(std::string_view text, String& out) {
  for (std::size_t position = 0; position < text.size();) {
    const auto [scalar, length] = decode(text.substr(position));
    if (scalar == kInvalid) {
      out.push_back(text[position]);
    } else if (scalar == kCapitalIWithDot) {
      out.push_back('i');
      appendUtf8(kCombiningDotAbove, out);
    } else if (scalar == kCapitalSigma && hasCasedBefore(text.substr(0, position)) &&
               !hasCasedAfter(text.substr(position + length))) {
      appendUtf8(kSmallFinalSigma, out);
    } else {
      appendUtf8(lower(scalar), out);
    }
    position += length;
  }
}

constexpr auto kComposition = static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE);

/// The scalars of a text, each taken apart as far as it goes; absent when the text is no UTF-8.
std::optional<std::vector<utf8proc_int32_t>> decomposed(std::string_view text) {
  // No scalar comes apart into more than 4, and the options leave nothing to fail.
  constexpr std::size_t kMostParts = 4;
  std::vector<utf8proc_int32_t> scalars;
  scalars.reserve(text.size());
  int boundary = 0;
  while (!text.empty()) {
    const auto [scalar, length] = decode(text);
    if (scalar == kInvalid) return std::nullopt;
    utf8proc_int32_t parts[kMostParts];
    const auto count = utf8proc_decompose_char(static_cast<utf8proc_int32_t>(scalar), parts,
                                               kMostParts, kComposition, &boundary);
    scalars.insert(scalars.end(), parts, parts + count);
    text.remove_prefix(length);
  }
  return scalars;
}

utf8proc_propval_t combiningClass(utf8proc_int32_t scalar) {
  return utf8proc_get_property(scalar)->combining_class;
}

/// Puts the marks of each letter in their canonical order. utf8proc does it by exchanging
/// neighbours: 20,000 marks in a row took 7 s.
void orderMarks(std::vector<utf8proc_int32_t>& scalars) {
  const auto isMark = [](utf8proc_int32_t scalar) { return combiningClass(scalar) != 0; };
  const auto isBefore = [](utf8proc_int32_t a, utf8proc_int32_t b) {
    return combiningClass(a) < combiningClass(b);
  };
  auto marks = std::find_if(scalars.begin(), scalars.end(), isMark);
  while (marks != scalars.end()) {
    const auto end = std::find_if_not(marks, scalars.end(), isMark);
    // A single mark, which is nearly every one, is spared the sort and its memory.
    if (end - marks > 1) std::stable_sort(marks, end, isBefore);
    marks = std::find_if(end, scalars.end(), isMark);
  }
}

}  // namespace

Characters::Iterator::Iterator(std::string_view rest)
    : rest_(rest), length_(firstCharacterLength(rest)) {}

Characters::Iterator& Characters::Iterator::operator++() {
  rest_.remove_prefix(length_);
  length_ = firstCharacterLength(rest_);
  return *this;
}

std::size_t count(std::string_view text) {
  std::size_t n = 0;
  for ([[maybe_unused]] auto character : Characters(text))
    ++n;
  return n;
}

std::string_view lastCharacter(std::string_view text) {
  return last(text, 1);
}

std::string_view firstCharacter(std::string_view text) {
  return text.substr(0, firstCharacterLength(text));
}

std::string_view withoutLast(std::string_view text, std::size_t n) {
  for (; n > 0 && !text.empty(); --n) {
    const auto start = plainLastStart(text);
    if (!start) return text.substr(0, startOfLast(text, n));
    text = text.substr(0, *start);
  }
  return text;
}

std::string_view last(std::string_view text, std::size_t n) {
  return text.substr(withoutLast(text, n).size());
}

std::optional<char32_t> singleScalar(std::string_view character) {
  if (character.empty()) return std::nullopt;
  const auto [scalar, length] = decode(character);
  if (scalar == kInvalid || length != character.size()) return std::nullopt;
  return scalar;
}

bool isLetter(std::string_view character) {
  return isLetter(firstScalar(character));
}

bool isNumber(std::string_view character) {
  const auto c = category(firstScalar(character));
  return c >= UTF8PROC_CATEGORY_ND && c <= UTF8PROC_CATEGORY_NO;
}

bool isUppercase(std::string_view character) {
  return category(firstScalar(character)) == UTF8PROC_CATEGORY_LU;
}

bool isLowercase(std::string_view character) {
  return category(firstScalar(character)) == UTF8PROC_CATEGORY_LL;
}

bool isAsciiLetter(std::string_view character) {
  return character.size() == 1 && isAsciiLetter(firstScalar(character));
}

bool isControl(std::string_view character) {
  return category(firstScalar(character)) == UTF8PROC_CATEGORY_CC;
}

bool isControlOrSpace(char32_t scalar) {
  const auto c = category(scalar);
  return c == UTF8PROC_CATEGORY_CC || c == UTF8PROC_CATEGORY_CF || isTrimmable(scalar);
}

int columns(char32_t scalar) {
  // All of ASCII that prints.
  if (scalar >= 0x20 && scalar < 0x7F) return 1;
  return utf8proc_charwidth(static_cast<utf8proc_int32_t>(scalar));
}

void appendLowercased(std::string_view text, ScratchText::String& out) {
  appendLower(text, out);
}

std::string lowercased(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  appendLower(text, out);
  return out;
}

std::string composed(std::string_view text) {
  if (isSurelyComposed(text)) return std::string(text);
  auto scalars = decomposed(text);
  if (!scalars) return std::string(text);
  orderMarks(*scalars);
  const auto length = utf8proc_normalize_utf32(
      scalars->data(), static_cast<utf8proc_ssize_t>(scalars->size()), kComposition);
  std::string out;
  out.reserve(text.size());
  for (utf8proc_ssize_t i = 0; i < length; ++i)
    appendUtf8(static_cast<char32_t>((*scalars)[static_cast<std::size_t>(i)]), out);
  return out;
}

bool isSurelyComposed(std::string_view text) {
  // Below U+0300 nothing combines, nor do the Cyrillic letters before the combining marks at
  // U+0483. In UTF-8 these are lead bytes below 0xCC and 0xD0, 0xD1.
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0xCC && byte != 0xD0 && byte != 0xD1) return false;
  }
  return true;
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty()) {
    const auto [scalar, length] = decode(text);
    if (!isTrimmable(scalar)) break;
    text.remove_prefix(length);
  }
  while (!text.empty()) {
    const auto start = lastScalarStart(text);
    if (!isTrimmable(decode(text.substr(start)).scalar)) break;
    text = text.substr(0, start);
  }
  return text;
}

std::string normalizedWord(std::string_view text) {
  auto lower = lowercased(trimmed(text));
  return isSurelyComposed(lower) ? lower : composed(lower);
}

bool isValidUtf8(std::string_view text) {
  for (std::size_t position = 0; position < text.size();) {
    const auto [scalar, length] = decode(text.substr(position));
    if (scalar == kInvalid) return false;
    position += length;
  }
  return true;
}

void appendScalar(char32_t scalar, std::string& out) {
  appendUtf8(scalar, out);
}

void appendScalar(char32_t scalar, ScratchText::String& out) {
  appendUtf8(scalar, out);
}

void appendScalar(char32_t scalar, std::u16string& out) {
  if (scalar < 0x10000) {
    out.push_back(static_cast<char16_t>(scalar));
  } else {
    out.push_back(static_cast<char16_t>(0xD800 + ((scalar - 0x10000) >> 10)));
    out.push_back(static_cast<char16_t>(0xDC00 + ((scalar - 0x10000) & 0x3FF)));
  }
}

std::u16string utf16(std::string_view text) {
  std::u16string units;
  while (!text.empty()) {
    auto [scalar, length] = decode(text);
    text.remove_prefix(length);
    if (scalar == kInvalid) scalar = kReplacementCharacter;
    appendScalar(scalar, units);
  }
  return units;
}

void assignUtf16(std::u16string_view units, std::string& out) {
  out.clear();
  for (std::size_t i = 0; i < units.size(); ++i) {
    char32_t scalar = units[i];
    const bool isHigh = scalar >= 0xD800 && scalar <= 0xDBFF;
    const bool isLow = scalar >= 0xDC00 && scalar <= 0xDFFF;
    if (isHigh && i + 1 < units.size() && units[i + 1] >= 0xDC00 && units[i + 1] <= 0xDFFF) {
      scalar = 0x10000 + ((scalar - 0xD800) << 10) + (units[i + 1] - 0xDC00u);
      ++i;
    } else if (isHigh || isLow) {
      scalar = kReplacementCharacter;
    }
    appendUtf8(scalar, out);
  }
}

std::size_t utf16Length(std::string_view text) {
  std::size_t units = 0;
  while (!text.empty()) {
    const auto [scalar, length] = decode(text);
    text.remove_prefix(length);
    units += scalar != kInvalid && scalar >= 0x10000 ? 2 : 1;
  }
  return units;
}

}  // namespace tessarok::text

#include "desktops/web/PackedFiles.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <optional>

namespace tessarok::web {

namespace {

constexpr std::string_view kTitle = "Tessarok words 1\n";
/// Bytes of a length.
constexpr std::size_t kLength = 4;
constexpr std::size_t kMostShared = 255;
constexpr char kEndOfWord = 0;

/// How a file is written.
enum class Form : unsigned char { plain, latin, cyrillic };

/// An alphabet whose letters are numbered from 1 and take the same number of bytes each.
struct Alphabet {
  std::size_t letterSize;
  std::size_t letters;

  /// The UTF-8 of a letter, of which `letterSize` bytes count.
  [[nodiscard]] std::array<char, 2> letter(std::size_t number) const {
    if (letterSize == 1) return {static_cast<char>('a' + number - 1), 0};
    // а to я, then ё.
    const std::size_t scalar = number == letters ? 0x451 : 0x430 + number - 1;
    return {static_cast<char>(0xC0 | scalar >> 6), static_cast<char>(0x80 | (scalar & 0x3F))};
  }
  /// 0 for what is no letter.
  [[nodiscard]] std::size_t numberOf(std::string_view bytes) const {
    for (std::size_t number = 1; number <= letters; ++number) {
      if (bytes == std::string_view(letter(number).data(), letterSize)) return number;
    }
    return 0;
  }
};

constexpr Alphabet kLatin{1, 26};
constexpr Alphabet kCyrillic{2, 33};

void addLength(std::size_t length, std::string& out) {
  for (std::size_t i = 0; i < kLength; ++i)
    out += static_cast<char>(length >> (8 * i) & 0xFF);
}

std::size_t sharedLetters(std::string_view a, std::string_view b, std::size_t letterSize) {
  const auto [at, _] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
  return std::min(static_cast<std::size_t>(at - a.begin()) / letterSize, kMostShared);
}

/// The words of a list; absent when it holds anything else.
std::optional<std::string> packWords(std::string_view text, const Alphabet& alphabet) {
  std::string out;
  std::string_view previous;
  while (!text.empty()) {
    const auto end = text.find('\n');
    if (end == std::string_view::npos || end % alphabet.letterSize != 0) return std::nullopt;
    const auto word = text.substr(0, end);
    const auto shared = sharedLetters(previous, word, alphabet.letterSize);
    out += static_cast<char>(shared);
    for (auto at = shared * alphabet.letterSize; at < end; at += alphabet.letterSize) {
      const auto number = alphabet.numberOf(word.substr(at, alphabet.letterSize));
      if (number == 0) return std::nullopt;
      out += static_cast<char>(number);
    }
    out += kEndOfWord;
    previous = word;
    text.remove_prefix(end + 1);
  }
  return out;
}

void addFile(const PackedFiles::File& file, std::string& out) {
  auto form = Form::latin;
  auto packed = packWords(file.text, kLatin);
  if (!packed) {
    form = Form::cyrillic;
    packed = packWords(file.text, kCyrillic);
  }
  if (!packed) {
    form = Form::plain;
    packed = file.text;
  }
  out += static_cast<char>(form);
  out += static_cast<char>(file.name.size());
  out += file.name;
  addLength(file.text.size(), out);
  addLength(packed->size(), out);
  out += *packed;
}

/// Takes a piece apart from its start. What is not there is absent.
class Reader {
 public:
  explicit Reader(std::string_view rest) : rest_(rest) {}

  [[nodiscard]] bool isAtEnd() const { return rest_.empty(); }
  std::optional<std::string_view> bytes(std::size_t count) {
    if (count > rest_.size()) return std::nullopt;
    const auto taken = rest_.substr(0, count);
    rest_.remove_prefix(count);
    return taken;
  }
  std::optional<unsigned char> byte() {
    const auto one = bytes(1);
    return one ? std::optional(static_cast<unsigned char>(one->front())) : std::nullopt;
  }
  std::optional<std::size_t> length() {
    const auto taken = bytes(kLength);
    if (!taken) return std::nullopt;
    std::size_t length = 0;
    for (std::size_t i = 0; i < kLength; ++i)
      length |= std::size_t{static_cast<unsigned char>((*taken)[i])} << (8 * i);
    return length;
  }

 private:
  std::string_view rest_;
};

/// Takes the words of a list out of their packed form. A page waits for it, so what is known when
/// it is compiled is not asked again for every letter.
template <std::size_t kStep>
class WordUnpacker {
 public:
  WordUnpacker(std::string_view packed, const Alphabet& alphabet, std::string& text)
      : packed_(packed), alphabet_(alphabet), text_(text) {
    for (std::size_t number = 1; number <= alphabet.letters; ++number)
      letters_[number] = alphabet.letter(number);
  }

  [[nodiscard]] bool isAtEnd() const { return at_ == packed_.size(); }
  /// Whether all of the text has been written.
  [[nodiscard]] bool isFull() const { return end_ == text_.size(); }

  /// The next word; false when there is none that fits. Not inlined: a browser makes a function
  /// fast between two calls of it, never while it runs.
  [[gnu::noinline]] bool next() {
    char* const out = text_.data();
    const auto room = text_.size();
    const auto shared = kStep * static_cast<unsigned char>(packed_[at_++]);
    const auto start = end_;
    if (shared > length_ || shared > room - end_) return false;
    std::memcpy(out + start, out + word_, shared);
    end_ += shared;
    while (at_ < packed_.size() && packed_[at_] != kEndOfWord) {
      const auto number = static_cast<unsigned char>(packed_[at_++]);
      if (number > alphabet_.letters || room - end_ < kStep) return false;
      std::memcpy(out + end_, letters_[number].data(), kStep);
      end_ += kStep;
    }
    if (isAtEnd() || isFull()) return false;
    ++at_;
    word_ = start;
    length_ = end_ - start;
    // The line break stands there already.
    ++end_;
    return true;
  }

 private:
  std::string_view packed_;
  const Alphabet& alphabet_;
  std::string& text_;
  std::array<std::array<char, 2>, 34> letters_{};
  std::size_t at_ = 0;
  std::size_t end_ = 0;
  /// The word before.
  std::size_t word_ = 0;
  std::size_t length_ = 0;
};

/// The list of which `size` bytes were packed; absent when these are others.
template <std::size_t kStep>
std::optional<std::string> unpackWords(std::string_view packed, const Alphabet& alphabet,
                                       std::size_t size) {
  // No room for what so few bytes cannot spell.
  if (size / (kStep * kMostShared + 1) > packed.size()) return std::nullopt;
  std::string text(size, '\n');
  WordUnpacker<kStep> words(packed, alphabet, text);
  while (!words.isAtEnd()) {
    if (!words.next()) return std::nullopt;
  }
  return words.isFull() ? std::optional(std::move(text)) : std::nullopt;
}

std::optional<std::string> unpackedText(std::string_view packed, Form form, std::size_t size) {
  if (form == Form::latin) return unpackWords<kLatin.letterSize>(packed, kLatin, size);
  if (form == Form::cyrillic) return unpackWords<kCyrillic.letterSize>(packed, kCyrillic, size);
  return size == packed.size() ? std::optional(std::string(packed)) : std::nullopt;
}

std::optional<PackedFiles::File> readFile(Reader& reader, std::size_t room) {
  const auto form = reader.byte();
  const auto nameSize = reader.byte();
  const auto name = reader.bytes(nameSize.value_or(0));
  const auto size = reader.length();
  const auto packed = reader.bytes(reader.length().value_or(0));
  if (!form || *form > static_cast<unsigned char>(Form::cyrillic)) return std::nullopt;
  if (!nameSize || !name || !size || !packed || *size > room) return std::nullopt;
  auto text = unpackedText(*packed, static_cast<Form>(*form), *size);
  if (!text) return std::nullopt;
  return PackedFiles::File{std::string(*name), std::move(*text)};
}

}  // namespace

std::string PackedFiles::pack(const std::vector<File>& files) {
  std::string out(kTitle);
  for (const auto& file : files)
    addFile(file, out);
  return out;
}

std::vector<PackedFiles::File> PackedFiles::unpack(std::string_view piece) {
  Reader reader(piece);
  if (reader.bytes(kTitle.size()) != kTitle) return {};
  std::vector<File> files;
  auto room = kMostText;
  while (!reader.isAtEnd()) {
    auto file = readFile(reader, room);
    if (!file) return {};
    room -= file->text.size();
    files.push_back(std::move(*file));
  }
  return files;
}

}  // namespace tessarok::web

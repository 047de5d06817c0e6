#include "InputText.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <iconv.h>
#include <memory>
#include <system_error>
#include <type_traits>
#include <utf8proc.h>

#include "InputError.h"

namespace tessarok::makedata {

namespace {

constexpr std::string_view kBlanks = " \t\r\n\v\f";

struct IconvCloser {
  using pointer = iconv_t;
  void operator()(iconv_t converter) const { iconv_close(converter); }
};

std::size_t lineAt(std::string_view bytes, std::size_t offset) {
  return 1 + static_cast<std::size_t>(std::count(
                 bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(offset), '\n'));
}

}  // namespace

std::vector<Line> splitLines(std::string_view text) {
  std::vector<Line> lines;
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    std::string_view line = text.substr(start, end - start);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    lines.push_back({lines.size() + 1, line});
    start = end + 1;
  }
  return lines;
}

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::vector<std::string_view> splitFields(std::string_view text) {
  std::vector<std::string_view> fields;
  std::size_t start = text.find_first_not_of(kBlanks);
  while (start != std::string_view::npos) {
    const std::size_t end = std::min(text.find_first_of(kBlanks, start), text.size());
    fields.push_back(text.substr(start, end - start));
    start = text.find_first_not_of(kBlanks, end);
  }
  return fields;
}

std::string toUtf8(const std::string& bytes, const char* charset,
                   const std::filesystem::path& file) {
  const iconv_t opened = iconv_open("UTF-8", charset);
  // iconv reports failure by an all-ones handle, whatever type the handle has.
  // NOLINTNEXTLINE(performance-no-int-to-ptr)
  if (opened == reinterpret_cast<iconv_t>(-1)) {
    throw InputError(file, 0, std::string("this system cannot convert from ") + charset);
  }
  const std::unique_ptr<std::remove_pointer_t<iconv_t>, IconvCloser> converter(opened);

  std::string input = bytes;  // iconv wants a mutable input although it leaves it alone
  char* from = input.data();
  std::size_t fromLeft = input.size();
  std::string output;
  std::array<char, 65536> chunk{};
  while (fromLeft > 0) {
    char* to = chunk.data();
    std::size_t toLeft = chunk.size();
    const std::size_t result = iconv(converter.get(), &from, &fromLeft, &to, &toLeft);
    const int error = errno;
    output.append(chunk.data(), chunk.size() - toLeft);
    if (result == static_cast<std::size_t>(-1) && error != E2BIG) {
      throw InputError(file, lineAt(bytes, bytes.size() - fromLeft),
                       std::string("not valid ") + charset + " text");
    }
  }
  return output;
}

std::u32string decodeUtf8(std::string_view text) {
  std::u32string scalars;
  scalars.reserve(text.size());
  while (!text.empty()) {
    utf8proc_int32_t scalar = 0;
    const auto used = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                       static_cast<utf8proc_ssize_t>(text.size()), &scalar);
    if (used <= 0) {
      scalars.push_back(U'\uFFFD');
      text.remove_prefix(1);
      continue;
    }
    scalars.push_back(static_cast<char32_t>(scalar));
    text.remove_prefix(static_cast<std::size_t>(used));
  }
  return scalars;
}

std::string encodeUtf8(std::u32string_view text) {
  std::string bytes;
  bytes.reserve(text.size() * 2);
  for (const char32_t scalar : text) {
    std::array<utf8proc_uint8_t, 4> encoded{};
    const auto size = utf8proc_encode_char(static_cast<utf8proc_int32_t>(scalar), encoded.data());
    bytes.append(reinterpret_cast<const char*>(encoded.data()), static_cast<std::size_t>(size));
  }
  return bytes;
}

std::u32string lowerCase(std::u32string_view text) {
  std::u32string lower(text);
  for (char32_t& scalar : lower) {
    scalar = static_cast<char32_t>(utf8proc_tolower(static_cast<utf8proc_int32_t>(scalar)));
  }
  return lower;
}

}  // namespace tessarok::makedata

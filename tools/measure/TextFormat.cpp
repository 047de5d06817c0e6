#include "TextFormat.h"

#include <array>
#include <cctype>
#include <charconv>
#include <utility>

#include "text/Text.h"

namespace tessarok::measure {

namespace {

std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    lines.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

/// Collects lines into paragraphs.
class Paragraphs {
 public:
  void add(std::string_view line) {
    if (!current_.empty()) current_ += ' ';
    current_ += line;
  }
  void end() {
    if (!text::trimmed(current_).empty()) all_.push_back(std::move(current_));
    current_.clear();
  }
  std::vector<std::string> take() {
    end();
    return std::move(all_);
  }

 private:
  std::string current_;
  std::vector<std::string> all_;
};

std::vector<std::string> fortuneParagraphs(std::string_view text) {
  Paragraphs paragraphs;
  for (const auto line : linesOf(text)) {
    const auto trimmed = text::trimmed(line);
    const bool isAuthor = trimmed.starts_with("--") || trimmed.starts_with("(c)");
    const bool startsSpeech = trimmed.starts_with("- ") || line.starts_with("  ");
    if (trimmed == "%" || trimmed.empty() || isAuthor || startsSpeech) paragraphs.end();
    if (trimmed != "%" && !isAuthor)
      paragraphs.add(trimmed.starts_with("- ") ? trimmed.substr(2) : trimmed);
  }
  return paragraphs.take();
}

std::vector<std::string> plainParagraphs(std::string_view text) {
  Paragraphs paragraphs;
  for (const auto line : linesOf(text)) {
    const auto trimmed = text::trimmed(line);
    if (trimmed.empty() || trimmed.starts_with("* ") || trimmed.starts_with("- ")) paragraphs.end();
    paragraphs.add(trimmed);
  }
  return paragraphs.take();
}

std::vector<std::string> lineParagraphs(std::string_view text) {
  Paragraphs paragraphs;
  for (const auto line : linesOf(text)) {
    paragraphs.add(text::trimmed(line));
    paragraphs.end();
  }
  return paragraphs.take();
}

/// Every text between two of `mark`, on one line; a backslash takes the meaning off what follows
/// it.
std::vector<std::string> quotedParagraphs(std::string_view text, char mark) {
  std::vector<std::string> all;
  for (const auto line : linesOf(text)) {
    std::optional<std::string> current;
    for (std::size_t i = 0; i < line.size(); ++i) {
      if (line[i] == mark) {
        if (current && !text::trimmed(*current).empty()) {
          all.emplace_back(text::trimmed(*current));
        }
        current = current ? std::nullopt : std::optional<std::string>("");
      } else if (line[i] == '\\' && i + 1 < line.size()) {
        ++i;
        if (current) *current += line[i] == 'n' ? ' ' : line[i];
      } else if (current) {
        *current += line[i];
      }
    }
  }
  return all;
}

/// The line without font changes and special characters of troff.
std::string withoutEscapes(std::string_view line) {
  std::string plain;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] != '\\') {
      plain += line[i];
      continue;
    }
    if (++i >= line.size()) break;
    if (line[i] == 'f') {
      if (i + 1 < line.size() && line[i + 1] == '[') {
        i = std::min(line.find(']', i), line.size());
      } else {
        ++i;
      }
    } else if (line[i] == '(') {
      const auto name = line.substr(i + 1, 2);
      plain += name == "aq" ? "'" : name == "em" || name == "en" ? "-" : "\"";
      i += 2;
    } else if (line[i] == '-') {
      plain += '-';
    } else if (line[i] == ' ' || line[i] == '~') {
      plain += ' ';
    } else if (line[i] == 'e') {
      plain += '\\';
    }
  }
  return plain;
}

/// The words of a request that sets its arguments in another font.
bool isFontRequest(std::string_view name) {
  constexpr std::array kRequests = {"B", "I", "BR", "BI", "IR", "RB", "RI", "IB"};
  for (const std::string_view request : kRequests) {
    if (name == request) return true;
  }
  return false;
}

std::vector<std::string> manParagraphs(std::string_view text) {
  Paragraphs paragraphs;
  bool isExample = false;
  for (const auto line : linesOf(text)) {
    if (!line.starts_with('.') && !line.starts_with('\'')) {
      if (!isExample) paragraphs.add(withoutEscapes(line));
      continue;
    }
    const auto end = std::min(line.find(' '), line.size());
    const auto name = line.substr(1, end - 1);
    if (name == "nf" || name == "EX") isExample = true;
    if (name == "fi" || name == "EE") isExample = false;
    if (isFontRequest(name) && !isExample) {
      paragraphs.add(withoutEscapes(line.substr(std::min(end + 1, line.size()))));
    } else {
      paragraphs.end();
    }
  }
  return paragraphs.take();
}

std::string entity(std::string_view name) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 11> kNamed = {
      {{"amp", "&"},
       {"lt", "<"},
       {"gt", ">"},
       {"quot", "\""},
       {"apos", "'"},
       {"nbsp", " "},
       {"mdash", "—"},
       {"ndash", "–"},
       {"laquo", "«"},
       {"raquo", "»"},
       {"hellip", "…"}}};
  for (const auto& [known, meaning] : kNamed) {
    if (name == known) return std::string(meaning);
  }
  if (!name.starts_with('#')) return "\uFFFD";
  const bool hex = name.size() > 1 && (name[1] == 'x' || name[1] == 'X');
  std::uint32_t scalar = 0;
  const auto digits = name.substr(hex ? 2 : 1);
  std::from_chars(digits.data(), digits.data() + digits.size(), scalar, hex ? 16 : 10);
  std::string text;
  if (scalar > 0 && scalar < 0x110000) text::appendScalar(scalar, text);
  return text;
}

std::string lowerTagName(std::string_view tag) {
  std::string name;
  for (const char byte : tag) {
    if (std::isalnum(static_cast<unsigned char>(byte)) == 0) break;
    name += static_cast<char>(std::tolower(static_cast<unsigned char>(byte)));
  }
  return name;
}

bool isInline(std::string_view name) {
  constexpr std::array kInline = {"a",   "b",   "i",    "em",   "strong", "span",
                                  "tt",  "u",   "cite", "code", "abbr",   "font",
                                  "kbd", "var", "sub",  "sup",  "acronym"};
  for (const std::string_view known : kInline) {
    if (name == known) return true;
  }
  return false;
}

/// What holds no running text: the end of such an element is searched for at once.
bool isSkipped(std::string_view name) {
  return name == "pre" || name == "script" || name == "style" || name == "head" || name == "nav";
}

/// Walks over an HTML text and collects the paragraphs.
class HtmlReader {
 public:
  explicit HtmlReader(std::string_view text) : text_(text) {}

  std::vector<std::string> read() {
    while (position_ < text_.size()) {
      const char byte = text_[position_];
      if (byte == '<') {
        readTag();
      } else if (byte == '&') {
        readEntity();
      } else {
        current_ += byte == '\n' ? ' ' : byte;
        ++position_;
      }
    }
    endParagraph();
    return std::move(paragraphs_);
  }

 private:
  void readTag() {
    const bool isComment = text_.substr(position_).starts_with("<!--");
    const auto end = isComment ? text_.find("-->", position_) : text_.find('>', position_);
    auto tag =
        text_.substr(position_ + 1, end == std::string_view::npos ? end : end - position_ - 1);
    position_ = end == std::string_view::npos ? text_.size() : end + (isComment ? 3 : 1);
    const bool closes = tag.starts_with('/');
    if (closes) tag.remove_prefix(1);
    const auto name = lowerTagName(tag);
    if (!isComment && !isInline(name)) endParagraph();
    if (!isComment && !closes && isSkipped(name)) skipTo("</" + name);
  }

  void skipTo(const std::string& endTag) {
    const auto end = text_.find(endTag, position_);
    position_ = end == std::string_view::npos ? text_.size() : end;
  }

  void readEntity() {
    const auto end = text_.find(';', position_);
    if (end == std::string_view::npos || end - position_ > 9) {
      current_ += text_[position_++];
      return;
    }
    current_ += entity(text_.substr(position_ + 1, end - position_ - 1));
    position_ = end + 1;
  }

  void endParagraph() {
    if (!text::trimmed(current_).empty()) paragraphs_.push_back(current_);
    current_.clear();
  }

  std::string_view text_;
  std::size_t position_ = 0;
  std::string current_;
  std::vector<std::string> paragraphs_;
};

/// A compiled catalogue of GNU gettext: two tables of lengths and places, the originals and their
/// translations, in the byte order of the machine that compiled it.
class CatalogReader {
 public:
  explicit CatalogReader(std::string_view bytes) : bytes_(bytes) {}

  [[nodiscard]] std::vector<std::string> read(bool originals) const {
    constexpr std::uint32_t kMagic = 0x950412DE;
    constexpr std::size_t kCountAt = 8;
    constexpr std::size_t kEntrySize = 8;
    std::vector<std::string> paragraphs;
    if (numberAt(0) != kMagic) return paragraphs;
    const std::size_t table = numberAt(originals ? kCountAt + 4 : kCountAt + 8);
    for (std::size_t i = 0; i < numberAt(kCountAt); ++i) {
      const std::size_t entry = table + i * kEntrySize;
      addTexts(textAt(numberAt(entry + 4), numberAt(entry)), paragraphs);
    }
    return paragraphs;
  }

 private:
  /// 0 behind the end.
  [[nodiscard]] std::uint32_t numberAt(std::size_t position) const {
    if (position + 4 > bytes_.size()) return 0;
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;)
      number = number << 8U | static_cast<unsigned char>(bytes_[position + i]);
    return number;
  }

  [[nodiscard]] std::string_view textAt(std::size_t position, std::size_t length) const {
    return position > bytes_.size() ? std::string_view() : bytes_.substr(position, length);
  }

  /// One of several forms of a plural ends with a zero byte; what stands before the byte 4 tells
  /// the translator where the text belongs.
  static void addTexts(std::string_view text, std::vector<std::string>& paragraphs) {
    const auto context = text.find('\4');
    if (context != std::string_view::npos) text.remove_prefix(context + 1);
    Paragraphs parts;
    while (!text.empty()) {
      const auto end = std::min(text.find_first_of(std::string_view("\0\n", 2)), text.size());
      if (text::isValidUtf8(text.substr(0, end))) parts.add(text.substr(0, end));
      parts.end();
      text.remove_prefix(std::min(end + 1, text.size()));
    }
    for (auto& part : parts.take())
      paragraphs.push_back(std::move(part));
  }

  std::string_view bytes_;
};

}  // namespace

std::optional<TextFormat> textFormatNamed(const std::string& name) {
  if (name == "fortune") return TextFormat::fortune;
  if (name == "html") return TextFormat::html;
  if (name == "man") return TextFormat::man;
  if (name == "plain") return TextFormat::plain;
  if (name == "lines") return TextFormat::lines;
  if (name == "catalog") return TextFormat::catalog;
  if (name == "catalog-originals") return TextFormat::catalogOriginals;
  if (name == "strings") return TextFormat::strings;
  if (name == "backquoted") return TextFormat::backquoted;
  return std::nullopt;
}

std::vector<std::string> paragraphsOf(std::string_view text, TextFormat format) {
  switch (format) {
    case TextFormat::fortune:
      return fortuneParagraphs(text);
    case TextFormat::html:
      return HtmlReader(text).read();
    case TextFormat::man:
      return manParagraphs(text);
    case TextFormat::plain:
      return plainParagraphs(text);
    case TextFormat::lines:
      return lineParagraphs(text);
    case TextFormat::catalog:
      return CatalogReader(text).read(false);
    case TextFormat::catalogOriginals:
      return CatalogReader(text).read(true);
    case TextFormat::strings:
      return quotedParagraphs(text, '"');
    case TextFormat::backquoted:
      return quotedParagraphs(text, '`');
  }
  return {};
}

}  // namespace tessarok::measure

#include <gtest/gtest.h>

#include "TextFormat.h"

namespace tessarok::measure::test {
namespace {

using Paragraphs = std::vector<std::string>;

TEST(TextFormat, HasNames) {
  EXPECT_EQ(textFormatNamed("html"), TextFormat::html);
  EXPECT_EQ(textFormatNamed("pdf"), std::nullopt);
}

TEST(TextFormat, ReadsSayingsWithoutTheirAuthors) {
  EXPECT_EQ(paragraphsOf("One saying\nover two lines.\n\t\t-- Someone\n%\n- Speech?\n- Answer.\n",
                         TextFormat::fortune),
            (Paragraphs{"One saying over two lines.", "Speech?", "Answer."}));
}

TEST(TextFormat, ReadsParagraphsOfHtml) {
  EXPECT_EQ(paragraphsOf("<head><title>x</title></head><p>A <b>bold</b>&nbsp;word &lt;&#x41;</p>"
                         "<pre>code</pre><li>item<!-- no > text --></li>",
                         TextFormat::html),
            (Paragraphs{"A bold word <A", "item"}));
}

TEST(TextFormat, ReadsManualPages) {
  EXPECT_EQ(paragraphsOf(".TH LS 1\n.PP\nList \\fIfiles\\fR with\n.BR ls .\n.nf\ncode\n.fi\n"
                         "It\\(aqs \\-a flag\n",
                         TextFormat::man),
            (Paragraphs{"List files with ls .", "It's -a flag"}));
}

/// A catalogue of one message, in the order of bytes of the machines that Debian compiles on.
std::string catalog(const std::string& original, const std::string& translation) {
  std::string bytes;
  const auto number = [&](std::size_t value) {
    for (int shift = 0; shift < 32; shift += 8)
      bytes += static_cast<char>(value >> shift & 0xFFU);
  };
  constexpr std::size_t kHead = 28;
  constexpr std::size_t kTexts = kHead + 16;
  for (const std::size_t value : {std::size_t{0x950412DE}, std::size_t{0}, std::size_t{1}, kHead,
                                  kHead + 8, std::size_t{0}, std::size_t{0}})
    number(value);
  number(original.size());
  number(kTexts);
  number(translation.size());
  number(kTexts + original.size() + 1);
  return bytes + original + '\0' + translation + '\0';
}

TEST(TextFormat, ReadsMessageCatalogues) {
  const auto bytes = catalog(std::string("menu\4One cat\0Many cats", 22), "Кот\nпришёл");
  EXPECT_EQ(paragraphsOf(bytes, TextFormat::catalog), (Paragraphs{"Кот", "пришёл"}));
  EXPECT_EQ(paragraphsOf(bytes, TextFormat::catalogOriginals),
            (Paragraphs{"One cat", "Many cats"}));
}

TEST(TextFormat, FindsNoTextInAFileThatIsNoCatalogue) {
  EXPECT_TRUE(paragraphsOf("text", TextFormat::catalog).empty());
  // Cut off in the middle.
  EXPECT_TRUE(paragraphsOf(catalog("One", "Кот").substr(0, 30), TextFormat::catalog).empty());
}

TEST(TextFormat, ReadsTheTextsOfScripts) {
  const std::string script =
      "dialogId(\"m-1\", \"My \\\"God\\\"!\")\n"
      "dialogStr(\"О боже!\") -- it's \"\"\nleft(\"open\n";
  EXPECT_EQ(paragraphsOf(script, TextFormat::strings),
            (Paragraphs{"m-1", "My \"God\"!", "О боже!"}));
  EXPECT_EQ(paragraphsOf("choice\n\t`\t\"Hello.\"`\n\t`a` `b`", TextFormat::backquoted),
            (Paragraphs{"\"Hello.\"", "a", "b"}));
}

TEST(TextFormat, ReadsPlainTextAndLines) {
  EXPECT_EQ(paragraphsOf("one\ntwo\n\nthree\n", TextFormat::plain),
            (Paragraphs{"one two", "three"}));
  EXPECT_EQ(paragraphsOf("  if x\n\nfi\n", TextFormat::lines), (Paragraphs{"if x", "fi"}));
}

}  // namespace
}  // namespace tessarok::measure::test

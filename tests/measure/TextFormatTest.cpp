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

TEST(TextFormat, ReadsPlainTextAndLines) {
  EXPECT_EQ(paragraphsOf("one\ntwo\n\nthree\n", TextFormat::plain),
            (Paragraphs{"one two", "three"}));
  EXPECT_EQ(paragraphsOf("  if x\n\nfi\n", TextFormat::lines), (Paragraphs{"if x", "fi"}));
}

}  // namespace
}  // namespace tessarok::measure::test

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "Baseline.h"
#include "HtmlReport.h"
#include "TextReport.h"

namespace tessarok::measure::test {
namespace {

CorpusReport report() {
  CorpusReport report;
  report.name = "ru";
  report.title = "Russian <texts>";
  report.language = Language::russian;
  report.sentences = 4;
  report.words = 10'000;
  report.longWords = 1'000;
  report.longRight = 990;
  report.oneLetterWords = 10;
  report.oneLetterRight = 5;
  report.firstRight = 3;
  report.secondRight = 4;
  report.falseFixes[{"it.", "шею"}] = 2;
  report.misses[{"да", "lf"}] = 10;
  return report;
}

TEST(Baseline, HasNothingToSayAboutTheSameFigures) {
  EXPECT_TRUE(worseThan(baselineOf({report()}), {report()}).empty());
}

TEST(Baseline, NamesEveryFigureThatIsWorse) {
  auto now = report();
  now.longRight = 989;
  now.falseFixes[{"it.", "шею"}] = 3;
  EXPECT_EQ(worseThan(baselineOf({report()}), {now}),
            (std::vector<std::string>{"ru: falseFixesPer10000 was 2 and is 3",
                                      "ru: lettersRight was 99 and is 98.9"}));
}

TEST(Baseline, WelcomesBetterFigures) {
  auto now = report();
  now.longRight = 1'000;
  now.falseFixes.clear();
  EXPECT_TRUE(worseThan(baselineOf({report()}), {now}).empty());
}

TEST(Baseline, WantsARecordOfEveryCorpus) {
  const auto complaints = worseThan(nlohmann::ordered_json::object(), {report()});
  ASSERT_FALSE(complaints.empty());
  EXPECT_EQ(complaints.front(), "ru: falseFixesPer10000 is not recorded");
}

TEST(CorpusReport, SurvivesTheWayThroughAPipe) {
  const auto copy = reportFromJson(toJson(report(), 1'000));
  EXPECT_EQ(toJson(copy, 1'000), toJson(report(), 1'000));
}

TEST(CorpusReport, AddsUp) {
  auto sum = report();
  sum.add(report());
  EXPECT_EQ(sum.words, 20'000U);
  EXPECT_EQ(sum.falseFixCount(), 4U);
  EXPECT_DOUBLE_EQ(sum.falseFixesPer10000(), 2);
  EXPECT_DOUBLE_EQ(sum.lettersRight(), 99);
  EXPECT_DOUBLE_EQ(sum.oneLetterRightShare(), 50);
}

TEST(Reports, HoldTheFiguresAndTheMisses) {
  const auto text = textReport({report()}, {}, 10);
  EXPECT_NE(text.find("it. -> шею"), std::string::npos);
  EXPECT_NE(text.find("99.00"), std::string::npos);
  const auto html = htmlReport({report()}, {}, 10);
  EXPECT_NE(html.find("Russian &lt;texts>"), std::string::npos);
  EXPECT_NE(html.find("<svg"), std::string::npos);
  EXPECT_EQ(html.find("http"), std::string::npos);
}

}  // namespace
}  // namespace tessarok::measure::test

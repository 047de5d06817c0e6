#include <fstream>
#include <gtest/gtest.h>

#include "Week.h"
#include "desktops/virtual/TemporaryDirectory.h"

namespace tessarok::measure::test {
namespace {

CorpusReport prose(const std::string& name, Language language, Occasion occasion,
                   std::size_t falseFixes, std::size_t right) {
  CorpusReport report;
  report.name = name;
  report.language = language;
  report.occasion = occasion;
  report.words = 10'000;
  report.longWords = 1'000;
  report.longRight = right;
  if (falseFixes > 0) report.falseFixes[{"it.", "шею"}] = falseFixes;
  return report;
}

CorpusReport code(std::size_t falseFixes) {
  auto report = prose("code", Language::english, Occasion::code, falseFixes, 0);
  report.isCode = true;
  report.longWords = 0;
  return report;
}

TEST(Repairs, CountAFalseFixThreeTimesAndOneStartInTen) {
  // Ten words of a thousand are a hundred of 10,000, and one sentence in ten begins wrong.
  EXPECT_DOUBLE_EQ(prose("a", Language::russian, Occasion::talk, 2, 990).repairs(), 6 + 10);
  EXPECT_DOUBLE_EQ(prose("a", Language::russian, Occasion::talk, 0, 1'000).repairs(), 0);
  EXPECT_DOUBLE_EQ(code(3).repairs(), 9);
}

TEST(Week, WeighsOccasionsAndCountsTextsOfOneAlike) {
  const std::vector<CorpusReport> reports = {
      prose("a", Language::russian, Occasion::talk, 0, 990),
      prose("b", Language::russian, Occasion::talk, 0, 970),
      prose("c", Language::russian, Occasion::letters, 0, 1'000),
      prose("d", Language::russian, Occasion::technical, 1, 1'000),
      prose("e", Language::english, Occasion::talk, 9, 0),
      code(2)};
  const auto week = weekOf(reports, {}, Language::russian);
  ASSERT_TRUE(week);
  EXPECT_NEAR(week->repairs, 0.6 * 20 + 0.2 * 0 + 0.15 * 3 + 0.05 * 6, 1e-9);
  EXPECT_FALSE(week->least);
}

TEST(Week, LeavesOutOccasionsWithoutATextAndTextsWithoutAnOccasion) {
  auto none = prose("b", Language::russian, Occasion::talk, 50, 0);
  none.occasion.reset();
  const std::vector<CorpusReport> reports = {
      prose("a", Language::russian, Occasion::talk, 0, 990),
      prose("c", Language::russian, Occasion::technical, 0, 1'000), none};
  const auto week = weekOf(reports, {{"a", 5}, {"c", 1}}, Language::russian);
  ASSERT_TRUE(week);
  EXPECT_NEAR(week->repairs, 0.6 * 10 / 0.75, 1e-9);
  ASSERT_TRUE(week->least);
  EXPECT_NEAR(*week->least, (0.6 * 5 + 0.15 * 1) / 0.75, 1e-9);
}

TEST(Week, IsAbsentForALanguageWithoutProse) {
  EXPECT_FALSE(weekOf({code(1)}, {}, Language::russian));
  EXPECT_FALSE(weekOf({}, {}, Language::english));
}

TEST(Week, OfBothLanguagesIsTheirMean) {
  const auto both = bothOf({10, 4}, {20, 6});
  EXPECT_DOUBLE_EQ(both.repairs, 15);
  EXPECT_DOUBLE_EQ(both.least.value(), 5);
  EXPECT_FALSE(bothOf({10, 4}, {20, std::nullopt}).least);
}

TEST(Ceilings, AreReadFromFigures) {
  const virtualdesktop::TemporaryDirectory folder;
  const auto file = folder.path() / "ceiling.json";
  std::ofstream(file) << R"([{"name": "a", "repairs": 2.5, "words": 1}])";
  EXPECT_EQ(readCeilings(file.string()), (Ceilings{{"a", 2.5}}));
  std::ofstream(file) << R"([{"name": "a"}])";
  EXPECT_THROW((void)readCeilings(file.string()), std::runtime_error);
  EXPECT_THROW((void)readCeilings((folder.path() / "none").string()), std::runtime_error);
}

}  // namespace
}  // namespace tessarok::measure::test

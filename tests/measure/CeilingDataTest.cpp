#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

#include "CeilingData.h"
#include "desktops/virtual/TemporaryDirectory.h"

namespace tessarok::measure::test {
namespace {

class CeilingDataTest : public ::testing::Test {
 protected:
  std::string contentOf(const char* name) const {
    std::ifstream stream(directory_.path() / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  virtualdesktop::TemporaryDirectory directory_;
};

TEST_F(CeilingDataTest, HoldsEveryWordOfTheSentences) {
  writeCeilingData({{"It's an XML-file.", Language::english}}, Language::english,
                   directory_.path());
  EXPECT_EQ(contentOf("dict_en.txt"), "an\nfile\nit\nq\ns\nxml\n");
  EXPECT_EQ(contentOf("freq_short_en.txt"), "an\nit\nxml\n");
}

TEST_F(CeilingDataTest, HoldsTheRussianPairsThatAreAlwaysConverted) {
  writeCeilingData({{"Если так", Language::russian}}, Language::russian, directory_.path());
  EXPECT_NE(contentOf("dict_ru.txt").find("если\n"), std::string::npos);
  EXPECT_NE(contentOf("freq_short_ru.txt").find("да\n"), std::string::npos);
  EXPECT_EQ(contentOf("dict_en.txt"), "q\n");
}

}  // namespace
}  // namespace tessarok::measure::test

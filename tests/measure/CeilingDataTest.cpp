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

  static std::filesystem::path packs() { return TESSAROK_TEST_DATA; }

  virtualdesktop::TemporaryDirectory directory_;
};

TEST_F(CeilingDataTest, HoldsThePacks) {
  writeCeilingData({}, Language::english, packs(), directory_.path());
  std::ifstream pack(packs() / "pack_it.txt", std::ios::binary);
  EXPECT_EQ(contentOf("pack_it.txt"), std::string(std::istreambuf_iterator<char>(pack), {}));
  EXPECT_NE(contentOf("pack_it.txt"), "");
  EXPECT_THROW(writeCeilingData({}, Language::english, directory_.path() / "none", packs()),
               std::runtime_error);
}

TEST_F(CeilingDataTest, HoldsEveryWordOfTheSentences) {
  writeCeilingData({{"It's an XML-file.", Language::english}}, Language::english, packs(),
                   directory_.path());
  EXPECT_EQ(contentOf("dict_en.txt"), "an\nfile\nit\nq\ns\nxml\n");
  EXPECT_EQ(contentOf("freq_short_en.txt"), "an\nit\nxml\n");
}

TEST_F(CeilingDataTest, HoldsTheRussianPairsThatAreAlwaysConverted) {
  writeCeilingData({{"Если так", Language::russian}}, Language::russian, packs(),
                   directory_.path());
  EXPECT_NE(contentOf("dict_ru.txt").find("если\n"), std::string::npos);
  EXPECT_NE(contentOf("freq_short_ru.txt").find("да\n"), std::string::npos);
  EXPECT_EQ(contentOf("dict_en.txt"), "q\n");
}

}  // namespace
}  // namespace tessarok::measure::test

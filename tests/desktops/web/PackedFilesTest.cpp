#include <gtest/gtest.h>

#include "desktops/web/PackedFiles.h"

namespace tessarok::web {
namespace {

using Files = std::vector<PackedFiles::File>;

TEST(PackedFiles, ComeOutAsTheyWentIn) {
  const Files files = {{"dict_en", "a\nab\nabc\nb\n"},
                       {"dict_ru", "а\nабв\nабё\nяё\nё\n"},
                       {"freq", "# a comment\nof 12\n"},
                       {"mixed", "a\nа\n"},
                       {"noLineBreak", "abc"},
                       {"emptyLine", "a\n\nb\n"},
                       {"long", std::string(600, 'a') + "\n" + std::string(700, 'a') + "\n"},
                       {"empty", ""}};
  EXPECT_EQ(PackedFiles::unpack(PackedFiles::pack(files)), files);
}

TEST(PackedFiles, AWordTakesOnlyWhatItDoesNotShare) {
  const auto one = PackedFiles::pack({{"a", "приветствие\n"}}).size();
  const auto two = PackedFiles::pack({{"a", "приветствие\nприветствия\n"}}).size();
  EXPECT_EQ(two - one, 3u);
}

TEST(PackedFiles, CutShortTheyAreNone) {
  const auto piece = PackedFiles::pack({{"dict_en", "a\nab\nb\n"}, {"plain", "x y\n"}});
  std::size_t whole = 0;
  for (std::size_t size = 0; size < piece.size(); ++size) {
    // Between two files nothing shows that one is missing.
    const auto files = PackedFiles::unpack(std::string_view(piece).substr(0, size));
    if (!files.empty()) ++whole;
    EXPECT_LE(files.size(), 1u);
  }
  EXPECT_EQ(whole, 1u);
}

TEST(PackedFiles, ALengthThatIsNotThereIsNotBelieved) {
  auto piece = PackedFiles::pack({{"dict_en", "a\n"}});
  // The four bytes of the unpacked length follow the name.
  const auto length = piece.find("dict_en") + 7;
  for (std::size_t i = 0; i < 4; ++i)
    piece[length + i] = static_cast<char>(0xFF);
  EXPECT_TRUE(PackedFiles::unpack(piece).empty());
}

}  // namespace
}  // namespace tessarok::web

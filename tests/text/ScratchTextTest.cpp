#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "text/ScratchText.h"

namespace tessarok {
namespace {

TEST(ScratchText, HoldsSeveralTexts) {
  ScratchText scratch;
  auto first = scratch.string();
  auto second = scratch.string();
  auto third = scratch.string();
  first = std::string(192, 'a');
  second = std::string(192, 'b');
  third = std::string(192, 'c');
  EXPECT_EQ(std::string_view(first), std::string(192, 'a'));
  EXPECT_EQ(std::string_view(second), std::string(192, 'b'));
  EXPECT_EQ(std::string_view(third), std::string(192, 'c'));
}

TEST(ScratchText, LongerAndMoreTextsSpillToTheHeap) {
  ScratchText scratch;
  auto longer = scratch.string();
  for (int i = 0; i < 10'000; ++i)
    longer.push_back(static_cast<char>('a' + i % 26));
  auto second = scratch.string();
  auto third = scratch.string();
  auto fourth = scratch.string();
  fourth = "the fourth";
  second = "the second";
  EXPECT_EQ(longer.size(), 10'000u);
  EXPECT_EQ(std::string_view(longer).substr(0, 3), "abc");
  EXPECT_EQ(std::string_view(second), "the second");
  EXPECT_EQ(std::string_view(fourth), "the fourth");
}

}  // namespace
}  // namespace tessarok

#include <gtest/gtest.h>

#include "Sha256.h"

namespace tessarok::makedata::test {
namespace {

// The digests of the empty message and of "abc" are the standard's own examples.
TEST(Sha256, GivesTheKnownDigests) {
  EXPECT_EQ(sha256(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  EXPECT_EQ(sha256("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

}  // namespace
}  // namespace tessarok::makedata::test

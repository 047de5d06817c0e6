// Large applications with toolkits of their own, through Fcitx on an X server.

#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <tuple>

#include "tests/desktops/fcitx5/SentenceCheck.h"
#include "tests/desktops/fcitx5/X11Session.h"

namespace tessarok::testing {
namespace {

using Entry = Session::Entry;

constexpr int kSentences = 50;

class Fcitx5Application : public ::testing::TestWithParam<std::tuple<Entry, int>> {};

TEST_P(Fcitx5Application, SentencesComeOut) {
  const auto [entry, interval] = GetParam();
  X11Session session;
  session.openEntry(entry);
  expectSentences(session, kSentences, std::chrono::milliseconds(interval));
}

std::string nameOf(const ::testing::TestParamInfo<std::tuple<Entry, int>>& test) {
  const auto [entry, interval] = test.param;
  const std::string program = entry == Entry::qt ? "Qt" : "Chromium";
  return program + "With" + std::to_string(interval) + "Milliseconds";
}

INSTANTIATE_TEST_SUITE_P(, Fcitx5Application,
                         ::testing::Combine(::testing::Values(Entry::qt, Entry::chromium),
                                            ::testing::Values(0, 5, 15)),
                         nameOf);

}  // namespace
}  // namespace tessarok::testing

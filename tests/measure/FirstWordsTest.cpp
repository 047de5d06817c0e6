// What people begin messages with, typed with the other layout on: with the shipped word data and
// the packs that are on by default.

#include <gtest/gtest.h>
#include <string>

#include "measure/Sentence.h"
#include "measure/SentenceTypist.h"

namespace tessarok::measure::test {
namespace {

struct Message {
  const char* text;
  Language language;
};

class FirstWordsTest : public ::testing::TestWithParam<Message> {};

TEST_P(FirstWordsTest, ComeOutRightFromTheWrongLayoutAndStayInTheRightOne) {
  SentenceTypist typist({.resources = TESSAROK_RESOURCES});
  const Sentence sentence{GetParam().text, GetParam().language};
  EXPECT_EQ(typist.type(sentence, SentenceTypist::Layout::wrong), sentence.text);
  EXPECT_EQ(typist.type(sentence, SentenceTypist::Layout::right), sentence.text);
}

INSTANTIATE_TEST_SUITE_P(
    English, FirstWordsTest,
    ::testing::Values(
        Message{"hi there", Language::english}, Message{"Hi John", Language::english},
        Message{"hey you there", Language::english}, Message{"Hey all", Language::english},
        Message{"bro what", Language::english}, Message{"imo it works", Language::english},
        Message{"lmk when done", Language::english}, Message{"nvm got it", Language::english},
        Message{"idc anymore", Language::english}, Message{"ppl say so", Language::english},
        Message{"afair it does", Language::english}, Message{"wfh today", Language::english}));

INSTANTIATE_TEST_SUITE_P(Russian, FirstWordsTest,
                         ::testing::Values(Message{"спс большое", Language::russian},
                                           Message{"плз глянь", Language::russian},
                                           Message{"лан пойду", Language::russian},
                                           Message{"хз как так", Language::russian},
                                           Message{"мож завтра", Language::russian},
                                           Message{"крч поехали", Language::russian},
                                           Message{"ясн тогда", Language::russian}));

}  // namespace
}  // namespace tessarok::measure::test

#include <gtest/gtest.h>

#include "tests/support/FakeDesktop.h"
#include "tests/support/TestFiles.h"
#include "words/ForgetRequest.h"
#include "words/IgnoreList.h"

namespace tessarok {
namespace {

namespace fs = std::filesystem;
using testing::FakeDesktop;
using Counts = IgnoreList::Counts;
using Recovery = IgnoreList::Recovery;

class IgnoreListTest : public ::testing::Test {
 protected:
  [[nodiscard]] std::string saved(const std::string& name) const {
    IgnoreList::flush();
    return testing::readFile(desktop.folder() / name);
  }
  void save(const std::string& name, std::string_view text) const {
    testing::writeFile(desktop.folder() / name, text);
  }
  [[nodiscard]] bool exists(const std::string& name) const {
    IgnoreList::flush();
    return fs::exists(desktop.folder() / name);
  }

  FakeDesktop desktop;
};

TEST_F(IgnoreListTest, WhatAnotherProgramWantsForgottenIsNotLeftAloneAnyMore) {
  IgnoreList::join(IgnoreList::Company::onlyOne);
  IgnoreList::load(Recovery::onDisk);
  IgnoreList::add("список");
  IgnoreList::recordRejection("слово");
  IgnoreList::flush();
  EXPECT_FALSE(ForgetRequest::write({"слово", "список"}));
  IgnoreList::tick();
  IgnoreList::flush();
  // What was learned since the start is taken back by the next tick.
  IgnoreList::tick();
  for (const auto* word : {"слово", "список"})
    EXPECT_FALSE(IgnoreList::contains(word)) << word;
  EXPECT_EQ(saved("ignored.txt"), "\n");
  EXPECT_EQ(saved("rejects.txt"), "\n");
}

TEST_F(IgnoreListTest, StartsEmptyWithoutFiles) {
  IgnoreList::load(Recovery::onDisk);
  EXPECT_TRUE(IgnoreList::words().empty());
  EXPECT_TRUE(IgnoreList::sessionWords().empty());
  EXPECT_TRUE(IgnoreList::rejectCounts().empty());
  EXPECT_FALSE(exists("ignored.txt"));
  EXPECT_FALSE(exists("rejects.txt"));
  EXPECT_TRUE(desktop.systemLog().take().empty());
}

TEST_F(IgnoreListTest, AByteOrderMarkIsReadOverAndKept) {
  save("ignored.txt", "\uFEFFone\n");
  save("rejects.txt", "\uFEFFtwo\t2\n");
  IgnoreList::load(Recovery::onDisk);
  EXPECT_EQ(IgnoreList::words(), (WordSet{"one"}));
  EXPECT_EQ(IgnoreList::rejectCounts(), (Counts{{"two", 2}}));
  IgnoreList::recordRejection("two");
  EXPECT_EQ(saved("ignored.txt"), "\uFEFFone\ntwo\n");
  EXPECT_EQ(saved("rejects.txt"), "\uFEFFtwo\t3\n");
}

TEST_F(IgnoreListTest, AWordThatBeginsLikeAMarkIsNotLostAtTheStartOfTheFile) {
  save("ignored.txt", "\n\uFEFFone\n");
  IgnoreList::load(Recovery::onDisk);
  IgnoreList::add("\uFEFFtwo");
  EXPECT_EQ(saved("ignored.txt"), "\uFEFF\uFEFFone\n\uFEFFtwo\n");
}

TEST_F(IgnoreListTest, SpacesAndCaseDoNotTellWordsApart) {
  IgnoreList::recordRejection("  Ghbdtn \n");
  IgnoreList::recordRejection("ghbdtn");
  EXPECT_EQ(IgnoreList::rejectCounts(), (Counts{{"ghbdtn", 2}}));
  IgnoreList::recordRejection(" \n");
  EXPECT_EQ(IgnoreList::rejectCounts().size(), 1u);
}

TEST_F(IgnoreListTest, TheThirdRejectionMakesAWordPermanent) {
  IgnoreList::recordRejection("слово");
  EXPECT_EQ(IgnoreList::sessionWords(), WordSet{"слово"});
  EXPECT_EQ(saved("rejects.txt"), "слово\t1\n");
  IgnoreList::recordRejection("слово");
  EXPECT_EQ(IgnoreList::sessionWords(), WordSet{"слово"});
  EXPECT_EQ(saved("rejects.txt"), "слово\t2\n");
  EXPECT_FALSE(exists("ignored.txt"));
  IgnoreList::recordRejection("слово");
  EXPECT_TRUE(IgnoreList::sessionWords().empty());
  EXPECT_EQ(IgnoreList::words(), WordSet{"слово"});
  EXPECT_EQ(saved("ignored.txt"), "слово\n");
  EXPECT_EQ(saved("rejects.txt"), "слово\t3\n");
}

TEST_F(IgnoreListTest, RejectingAPermanentWordWritesNothing) {
  IgnoreList::add("Слово");
  EXPECT_EQ(saved("ignored.txt"), "слово\n");
  desktop.files().writes.clear();
  IgnoreList::recordRejection("СЛОВО");
  IgnoreList::add(" слово");
  IgnoreList::add("");
  IgnoreList::flush();
  EXPECT_TRUE(desktop.files().writes.empty());
  EXPECT_TRUE(IgnoreList::rejectCounts().empty());
}

TEST_F(IgnoreListTest, CountsSurviveARestartButTheSessionsExemptionDoesNot) {
  save("rejects.txt", "слово\t2\n");
  IgnoreList::load(Recovery::onDisk);
  EXPECT_TRUE(IgnoreList::sessionWords().empty());
  EXPECT_TRUE(IgnoreList::words().empty());
  IgnoreList::recordRejection("слово");
  EXPECT_EQ(IgnoreList::words(), WordSet{"слово"});
  EXPECT_EQ(saved("ignored.txt"), "слово\n");
  EXPECT_EQ(saved("rejects.txt"), "слово\t3\n");
}

TEST_F(IgnoreListTest, APromotedWordMissingFromTheListIsPutBack) {
  save("rejects.txt", "слово\t7");
  IgnoreList::load(Recovery::onDisk);
  EXPECT_EQ(IgnoreList::words(), WordSet{"слово"});
  EXPECT_EQ(IgnoreList::rejectCounts(), (Counts{{"слово", 3}}));
  EXPECT_EQ(saved("ignored.txt"), "слово\n");
}

TEST_F(IgnoreListTest, NothingIsWrittenWhenNothingWasPutBack) {
  save("ignored.txt", "слово\n");
  save("rejects.txt", "одно\nдва\tx\nтри\t0\nслово\t3\nчетыре\t2\n");
  IgnoreList::load(Recovery::onDisk);
  IgnoreList::flush();
  EXPECT_TRUE(desktop.files().writes.empty());
  EXPECT_EQ(IgnoreList::words(), WordSet{"слово"});
}

TEST_F(IgnoreListTest, RecoveredWordsAreWrittenOnlyWhenAskedFor) {
  save("rejects.txt", "слово\t3\n");
  IgnoreList::load(Recovery::inMemory);
  EXPECT_EQ(IgnoreList::words(), WordSet{"слово"});
  EXPECT_FALSE(exists("ignored.txt"));
}

TEST_F(IgnoreListTest, ACountOfAListedWordIsDropped) {
  save("ignored.txt", "слово\n");
  save("rejects.txt", "слово\t3\nдругое\t1\n");
  IgnoreList::load(Recovery::onDisk);
  EXPECT_EQ(IgnoreList::rejectCounts(), (Counts{{"другое", 1}}));
  IgnoreList::flush();
  EXPECT_TRUE(desktop.files().writes.empty());
  IgnoreList::recordRejection("другое");
  EXPECT_EQ(saved("rejects.txt"), "другое\t2\n");
}

TEST_F(IgnoreListTest, MalformedLinesAreSkipped) {
  save("rejects.txt",
       "одно\nдва\t2\t2\nтри\tx\nчетыре\t0\nпять\t-1\n\t1\nшесть\t 1\nсемь\t1.5\n"
       "восемь\t99999999999999999999\n\n  Девять\t1  \nдесять\t\t2\n+\t+2\n \t1\nдва\t+-1\n");
  IgnoreList::load(Recovery::onDisk);
  EXPECT_EQ(IgnoreList::rejectCounts(), (Counts{{"девять", 1}, {"десять", 2}, {"+", 2}}));
  IgnoreList::recordRejection("+");
  EXPECT_EQ(saved("rejects.txt"), "+\t3\nдевять\t1\nдесять\t2\n");
}

TEST_F(IgnoreListTest, ListedWordsAreNormalised) {
  save("ignored.txt", "  Слово\n\nДВА\n \nраи\u0306\n");
  IgnoreList::load(Recovery::onDisk);
  EXPECT_EQ(IgnoreList::words(), (WordSet{"два", "рай", "слово"}));
}

TEST_F(IgnoreListTest, CrLfLineEndsBreakNoLine) {
  save("ignored.txt", "раз\r\nдва\r\n");
  IgnoreList::load(Recovery::onDisk);
  EXPECT_EQ(IgnoreList::words(), WordSet{"раз\r\nдва"});
}

TEST_F(IgnoreListTest, FilesAreInTheOrderOfTheWords) {
  for (const auto* word : {"яма", "ёж", "zoo", "abc", "арка"})
    IgnoreList::add(word);
  EXPECT_EQ(saved("ignored.txt"), "abc\nzoo\nарка\nяма\nёж\n");
}

TEST_F(IgnoreListTest, AWordLearnedInTheMiddleOfALongListIsSavedInItsPlace) {
  std::string before;
  std::string after;
  for (int i = 0; i < 1000; ++i)
    (i < 300 ? before : after) += "w" + std::to_string(1000 + i) + "\n";
  save("ignored.txt", before + after);
  IgnoreList::load(Recovery::onDisk);
  IgnoreList::add("w1299a");
  EXPECT_EQ(saved("ignored.txt"), before + "w1299a\n" + after);
}

TEST_F(IgnoreListTest, OnePendingWordTooManyGoesTheLowestCountFirst) {
  std::string text;
  // The alphabetically first words have the higher count.
  for (int i = 0; i < 100; ++i)
    text += "a" + std::to_string(1000 + i) + "\t2\n";
  for (int i = 0; i < 400; ++i)
    text += "b" + std::to_string(1000 + i) + "\t1\n";
  save("rejects.txt", text);
  IgnoreList::load(Recovery::onDisk);
  EXPECT_EQ(IgnoreList::rejectCounts().size(), 500u);
  IgnoreList::recordRejection("zzz");
  EXPECT_EQ(IgnoreList::rejectCounts().size(), 500u);
  EXPECT_FALSE(IgnoreList::rejectCounts().contains("b1000"));
  EXPECT_TRUE(IgnoreList::rejectCounts().contains("b1001"));
  EXPECT_TRUE(IgnoreList::rejectCounts().contains("a1000"));
  EXPECT_TRUE(IgnoreList::rejectCounts().contains("zzz"));
}

TEST_F(IgnoreListTest, PruningNeverTouchesPromotedWordsNorTheSession) {
  std::string text = "promoted\t3\n";
  for (int i = 0; i < 500; ++i)
    text += "w" + std::to_string(1000 + i) + "\t2\n";
  save("rejects.txt", text);
  IgnoreList::load(Recovery::onDisk);
  EXPECT_EQ(IgnoreList::rejectCounts().size(), 501u);
  IgnoreList::recordRejection("aaa");
  // The new word has the lowest count of all and is forgotten on the disk at once.
  EXPECT_FALSE(IgnoreList::rejectCounts().contains("aaa"));
  EXPECT_EQ(IgnoreList::sessionWords(), WordSet{"aaa"});
  EXPECT_EQ(IgnoreList::rejectCounts().size(), 501u);
  EXPECT_TRUE(IgnoreList::rejectCounts().contains("promoted"));
}

TEST_F(IgnoreListTest, AListThatIsNotUtf8IsLeftAloneForTheWholeRun) {
  save("ignored.txt", "сло\xff\n");
  save("rejects.txt", "слово\t2\n");
  IgnoreList::load(Recovery::onDisk);
  IgnoreList::recordRejection("слово");
  IgnoreList::add("ещё");
  EXPECT_EQ(IgnoreList::words(), (WordSet{"ещё", "слово"}));
  EXPECT_EQ(saved("ignored.txt"), "сло\xff\n");
  EXPECT_EQ(saved("rejects.txt"), "слово\t3\n");
  const auto log = desktop.systemLog().take();
  ASSERT_EQ(log.size(), 1u);
  EXPECT_TRUE(log.front().starts_with(
      "Tessarok: preserving unreadable ignored.txt; learning stays in memory: "))
      << log.front();
}

TEST_F(IgnoreListTest, AListThatCannotBeReadIsLeftAloneToo) {
  fs::create_directories(desktop.folder() / "rejects.txt");
  IgnoreList::load(Recovery::onDisk);
  IgnoreList::recordRejection("слово");
  IgnoreList::flush();
  EXPECT_TRUE(fs::is_directory(desktop.folder() / "rejects.txt"));
  EXPECT_EQ(IgnoreList::rejectCounts(), (Counts{{"слово", 1}}));
  const auto log = desktop.systemLog().take();
  ASSERT_EQ(log.size(), 1u);
  EXPECT_TRUE(log.front().starts_with(
      "Tessarok: preserving unreadable rejects.txt; learning stays in memory: "))
      << log.front();
}

TEST_F(IgnoreListTest, AFailedWriteIsReportedAndMadeUpForByTheNext) {
  desktop.files().failsNextWrite = true;
  IgnoreList::recordRejection("раз");
  IgnoreList::flush();
  EXPECT_EQ(desktop.systemLog().take(),
            std::vector<std::string>{"Tessarok: could not save rejects.txt: the disk is full"});
  EXPECT_FALSE(exists("rejects.txt"));
  IgnoreList::recordRejection("два");
  EXPECT_EQ(saved("rejects.txt"), "два\t1\nраз\t1\n");
}

TEST_F(IgnoreListTest, AFolderThatCannotBeMadeIsReportedWithTheWrite) {
  testing::writeFile(desktop.folder().parent_path() / "Tessarok", "in the way");
  IgnoreList::recordRejection("раз");
  IgnoreList::flush();
  const auto log = desktop.systemLog().take();
  ASSERT_EQ(log.size(), 1u);
  EXPECT_TRUE(log.front().starts_with("Tessarok: could not save rejects.txt: ")) << log.front();
}

TEST_F(IgnoreListTest, LoadingTwiceReadsTheFilesOnce) {
  IgnoreList::load(Recovery::onDisk);
  IgnoreList::flush();
  save("ignored.txt", "слово\n");
  IgnoreList::load(Recovery::onDisk);
  EXPECT_TRUE(IgnoreList::words().empty());
  IgnoreList::flush();
  EXPECT_EQ(desktop.files().reads["ignored.txt"], 1);
  EXPECT_EQ(desktop.files().reads["rejects.txt"], 1);
}

}  // namespace
}  // namespace tessarok

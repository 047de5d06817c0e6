#include <chrono>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/FakeDesktop.h"
#include "tests/support/TestFiles.h"
#include "words/ListQueue.h"
#include "words/UserDict.h"

namespace tessarok {
namespace {

namespace fs = std::filesystem;
using testing::FakeDesktop;
using testing::readFile;
using testing::writeFile;

/// Puts a new file in the old one's place, as editors do that save atomically.
void swapIn(const fs::path& file, std::string_view text) {
  writeFile(file.string() + ".new", text);
  fs::rename(file.string() + ".new", file);
}

TEST(UserDict, LivesInTheFolderOfTheProgram) {
  FakeDesktop desktop;
  EXPECT_EQ(UserDict::fileURL(), desktop.folder() / "dictionary.txt");
  desktop.files().knowsApplicationSupport = false;
  EXPECT_EQ(UserDict::fileURL(),
            desktop.home() / "Library" / "Application Support" / "Tessarok" / "dictionary.txt");
}

TEST(UserDict, TheFirstStartWritesTheTemplate) {
  FakeDesktop desktop;
  UserDict::seedIfMissing();
  UserDict::reload();
  EXPECT_EQ(UserDict::words().size(), 39u);
  EXPECT_TRUE(UserDict::words().contains("кеш"));
  EXPECT_TRUE(UserDict::words().contains("локалхост"));
  EXPECT_TRUE(UserDict::words().contains("csr"));
  for (const auto& word : UserDict::words())
    EXPECT_NE(word.front(), '#') << word;
  const auto text = readFile(UserDict::fileURL());
  EXPECT_TRUE(
      text.starts_with("# Tessarok — пользовательский словарь: эти слова НИКОГДА не "
                       "исправляются.\n# Одно слово на строку, "));
  EXPECT_TRUE(text.ends_with("\nssr\ncsr"));
  EXPECT_NE(text.find("\n\n# --- русский дев-сленг (транслит, которого нет в словаре) ---\nкеш\n"),
            std::string::npos);
  EXPECT_NE(text.find("\nлокалхост\n\n# --- латинские аббревиатуры, чей свап совпадает с русским "
                      "словом ---\njwt\n"),
            std::string::npos);
}

TEST(UserDict, AnExistingFileIsNeverOverwritten) {
  FakeDesktop desktop;
  writeFile(UserDict::fileURL(), "");
  UserDict::seedIfMissing();
  ListQueue::drain();
  EXPECT_EQ(readFile(UserDict::fileURL()), "");
  UserDict::reload();
  EXPECT_TRUE(UserDict::words().empty());
}

TEST(UserDict, SeedingThatFailsIsSilent) {
  FakeDesktop desktop;
  desktop.files().failsNextWrite = true;
  UserDict::seedIfMissing();
  ListQueue::drain();
  EXPECT_FALSE(fs::exists(UserDict::fileURL()));
  UserDict::seedIfMissing();
  ListQueue::drain();
  EXPECT_TRUE(fs::exists(UserDict::fileURL()));
  EXPECT_TRUE(desktop.systemLog().take().empty());
}

TEST(UserDict, ADeletedFileKeepsTheWords) {
  FakeDesktop desktop;
  writeFile(UserDict::fileURL(), "слово\n");
  UserDict::reload();
  ListQueue::drain();
  fs::remove(UserDict::fileURL());
  UserDict::reloadIfChanged();
  ListQueue::drain();
  UserDict::reloadIfChanged();
  EXPECT_EQ(UserDict::words(), WordSet{"слово"});
  EXPECT_FALSE(fs::exists(UserDict::fileURL()));
  // The same text again is a new file all the same.
  writeFile(UserDict::fileURL(), "другое\n");
  UserDict::reloadIfChanged();
  EXPECT_EQ(UserDict::words(), WordSet{"другое"});
}

TEST(UserDict, AnUnchangedFileIsNotReadAgain) {
  FakeDesktop desktop;
  writeFile(UserDict::fileURL(), "слово\n");
  UserDict::reload();
  ListQueue::drain();
  UserDict::reloadIfChanged();
  ListQueue::drain();
  UserDict::reloadIfChanged();
  ListQueue::drain();
  EXPECT_EQ(desktop.files().reads["dictionary.txt"], 1);
}

TEST(UserDict, AFileSwappedInWithTheSameSizeAndTimeIsNoticed) {
  FakeDesktop desktop;
  const auto file = UserDict::fileURL();
  writeFile(file, "раз\n");
  const auto time = fs::last_write_time(file);
  UserDict::reload();
  ListQueue::drain();
  swapIn(file, "два\n");
  fs::last_write_time(file, time);
  UserDict::reloadIfChanged();
  EXPECT_EQ(UserDict::words(), WordSet{"два"});
}

TEST(UserDict, AFileChangedInPlaceIsNoticed) {
  FakeDesktop desktop;
  const auto file = UserDict::fileURL();
  writeFile(file, "раз\n");
  UserDict::reload();
  ListQueue::drain();
  const auto time = fs::last_write_time(file);
  writeFile(file, "два\n");
  fs::last_write_time(file, time + std::chrono::seconds(1));
  UserDict::reloadIfChanged();
  EXPECT_EQ(UserDict::words(), WordSet{"два"});
}

TEST(UserDict, AFileThatIsNotUtf8IsIgnoredUntilItIsFixed) {
  FakeDesktop desktop;
  const auto file = UserDict::fileURL();
  writeFile(file, "слово\n");
  UserDict::reload();
  ListQueue::drain();
  swapIn(file, "сло\xff\n");
  UserDict::reloadIfChanged();
  EXPECT_EQ(UserDict::words(), WordSet{"слово"});
  swapIn(file, "новое\n");
  UserDict::reloadIfChanged();
  EXPECT_EQ(UserDict::words(), WordSet{"новое"});
  EXPECT_TRUE(desktop.systemLog().take().empty());
}

TEST(UserDict, AHundredThousandWordsAreRead) {
  FakeDesktop desktop;
  std::string text;
  for (int i = 0; i < 100'000; ++i)
    text += "Слово" + std::to_string(i) + "\n";
  writeFile(UserDict::fileURL(), text);
  UserDict::reload();
  EXPECT_EQ(UserDict::words().size(), 100'000u);
  EXPECT_TRUE(UserDict::words().contains("слово99999"));
  EXPECT_TRUE(desktop.systemLog().take().empty());
}

TEST(UserDict, AClockThatWasPutBackHidesNoChange) {
  FakeDesktop desktop;
  const auto file = UserDict::fileURL();
  writeFile(file, "слово\n");
  UserDict::reload();
  ListQueue::drain();
  writeFile(file, "новое\n");
  fs::last_write_time(file, fs::last_write_time(file) - std::chrono::hours(24 * 365));
  UserDict::reloadIfChanged();
  EXPECT_EQ(UserDict::words(), WordSet{"новое"});
}

TEST(UserDict, WhatIsNoFileIsIgnored) {
  FakeDesktop desktop;
  const auto file = UserDict::fileURL();
  writeFile(file, "слово\n");
  UserDict::reload();
  ListQueue::drain();
  fs::remove(file);
  ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
  UserDict::reloadIfChanged();
  ListQueue::drain();
  fs::remove(file);
  fs::create_directory(file);
  UserDict::seedIfMissing();
  UserDict::reloadIfChanged();
  ListQueue::drain();
  fs::remove(file);
  fs::create_symlink("/dev/zero", file);
  UserDict::reloadIfChanged();
  EXPECT_EQ(UserDict::words(), WordSet{"слово"});
}

TEST(UserDict, AFileThatChangesWhileItIsReadIsReadAgainAtTheNextCheck) {
  FakeDesktop desktop;
  const auto file = UserDict::fileURL();
  writeFile(file, "старое\n");
  UserDict::reload();
  ListQueue::drain();
  swapIn(file, "половина\n");
  desktop.files().afterRead = [&](const fs::path&) { swapIn(file, "целое и новое\n"); };
  UserDict::reloadIfChanged();
  EXPECT_EQ(UserDict::words(), WordSet{"старое"});
  desktop.files().afterRead = nullptr;
  UserDict::reloadIfChanged();
  EXPECT_EQ(UserDict::words(), WordSet{"целое и новое"});
}

TEST(UserDict, AFileThatVanishesWhileItIsReadChangesNothing) {
  FakeDesktop desktop;
  const auto file = UserDict::fileURL();
  writeFile(file, "слово\n");
  desktop.files().afterRead = [&](const fs::path&) { fs::remove(file); };
  UserDict::reload();
  EXPECT_TRUE(UserDict::words().empty());
}

}  // namespace
}  // namespace tessarok

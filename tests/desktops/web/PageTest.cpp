// The corrector of a page, as its script calls it.

#include <filesystem>
#include <gtest/gtest.h>

#include "desktops/layouts/KeyTable.h"
#include "desktops/web/PackedFiles.h"
#include "desktops/web/Page.h"
#include "platform/EventFlags.h"
#include "tests/support/TestFiles.h"

namespace tessarok::web {
namespace {

namespace flags = platform::eventFlags;

std::string wordData() {
  std::vector<PackedFiles::File> files;
  for (const auto& entry : std::filesystem::directory_iterator(TESSAROK_TEST_DATA)) {
    if (entry.path().extension() != ".txt") continue;
    files.push_back({entry.path().stem().string(), testing::readFile(entry.path().string())});
  }
  return PackedFiles::pack(files);
}

class WebPage : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(page_.launch(wordData())); }

  const FieldEdit& press(char character, std::uint64_t modifiers = 0) {
    if (character == ' ') return page_.keyDown({.code = keyCodes::space, .modifiers = modifiers});
    const auto stroke =
        layouts::KeyTable::english().strokeFor(static_cast<unsigned char>(character));
    return page_.keyDown(
        {.code = stroke->code, .modifiers = modifiers | (stroke->shift ? flags::shift : 0)});
  }
  void type(std::string_view keys) {
    for (const char key : keys)
      press(key);
  }

  Page page_;
};

TEST_F(WebPage, ALetterGoesOnAsTheLayoutHasIt) {
  EXPECT_EQ(press('g').keyText, u"g");
  EXPECT_TRUE(press('g').keyPasses);
  page_.desktop().selectLayout(Language::russian);
  EXPECT_EQ(press('g').keyText, u"п");
  EXPECT_EQ(press('g', flags::shift).keyText, u"П");
}

TEST_F(WebPage, CapsLockIsShiftForLettersOnly) {
  EXPECT_EQ(press('g', flags::capsLock).keyText, u"G");
  EXPECT_EQ(press('g', flags::capsLock | flags::shift).keyText, u"g");
  EXPECT_EQ(press(';', flags::capsLock).keyText, u";");
  page_.desktop().selectLayout(Language::russian);
  EXPECT_EQ(press(';', flags::capsLock).keyText, u"Ж");
  EXPECT_EQ(press('1', flags::capsLock).keyText, u"1");
}

TEST_F(WebPage, AWrongWordIsReplacedTogetherWithItsEnd) {
  type("ghbdtn");
  const auto& edit = press(' ');
  EXPECT_EQ(edit.erase, 6u);
  EXPECT_EQ(edit.text, u"привет ");
  EXPECT_FALSE(edit.keyPasses);
  EXPECT_EQ(page_.desktop().layout(), Language::russian);
  EXPECT_TRUE(page_.explainLastWord().starts_with("ghbdtn\nconverted\nпривет\n"));
}

TEST_F(WebPage, ReturnAndTabGoOnBehindTheNewWord) {
  for (const auto code : {keyCodes::returnKey, keyCodes::tab}) {
    page_.desktop().selectLayout(Language::english);
    page_.desktop().click();
    type("ghbdtn");
    const auto& edit = page_.keyDown({.code = code});
    EXPECT_EQ(edit.erase, 6u);
    EXPECT_EQ(edit.text, u"привет");
    EXPECT_TRUE(edit.keyPasses);
    EXPECT_TRUE(edit.keyText.empty());
  }
}

TEST_F(WebPage, AClickOrAnotherFieldEndsTheWord) {
  type("ghb");
  page_.desktop().click();
  type("dtn");
  EXPECT_LT(press(' ').erase, 6u);
  page_.desktop().selectLayout(Language::english);
  type("ghb");
  page_.desktop().focusMoved();
  type("dtn");
  EXPECT_LT(press(' ').erase, 6u);
}

TEST_F(WebPage, TextWithoutKeysIsCorrectedToo) {
  for (const char16_t letter : std::u16string_view(u"ghbdtn"))
    EXPECT_TRUE(page_.textTyped({&letter, 1}).keyPasses);
  const auto& edit = page_.textTyped(u" ");
  EXPECT_EQ(edit.erase, 6u);
  EXPECT_EQ(edit.text, u"привет ");
}

TEST_F(WebPage, AfterAChangeThatCannotBeToldTheWordIsNotKnown) {
  type("ghb");
  page_.textTyped(u"");
  type("dtn");
  EXPECT_FALSE(press(' ').changesText());
  type("ghb");
  page_.textTyped(u"pasted words");
  type("dtn");
  EXPECT_FALSE(press(' ').changesText());
}

TEST_F(WebPage, TheGraveAccentPausesInTheEnglishLayoutOnly) {
  page_.desktop().selectLayout(Language::russian);
  EXPECT_EQ(press('`').keyText, u"ё");
  EXPECT_FALSE(page_.isPaused());
  page_.desktop().selectLayout(Language::english);
  press('`');
  EXPECT_TRUE(page_.isPaused());
  type("ghbdtn");
  EXPECT_FALSE(press(' ').changesText());
  page_.desktop().advanceTo(6);
  EXPECT_FALSE(page_.isPaused());
  type("ghbdtn");
  EXPECT_TRUE(press(' ').changesText());
}

TEST_F(WebPage, OptionSpaceTakesAFixBack) {
  type("ghbdtn ");
  const auto& edit = press(' ', flags::option);
  EXPECT_EQ(edit.erase, 7u);
  EXPECT_EQ(edit.text, u"ghbdtn ");
  EXPECT_FALSE(edit.keyPasses);
}

TEST_F(WebPage, AShortcutIsNoEndOfAWord) {
  type("ghb");
  EXPECT_TRUE(press('v', flags::control).keyPasses);
  EXPECT_TRUE(page_.explainLastWord().empty());
}

TEST_F(WebPage, PacksAreSwitched) {
  EXPECT_TRUE(Page::isPackOn(0));
  EXPECT_FALSE(Page::isPackOn(2));
  page_.togglePack(2);
  EXPECT_TRUE(Page::isPackOn(2));
  page_.togglePack(3);
  EXPECT_FALSE(Page::isPackOn(3));
}

TEST(WebPageWithoutWords, IsNotLaunched) {
  Page page;
  EXPECT_FALSE(page.launch("not word data"));
}

}  // namespace
}  // namespace tessarok::web

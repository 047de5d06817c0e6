#include <csignal>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "desktops/macos/MacInputSource.h"
#include "desktops/macos/MacInputSources.h"
#include "tests/desktops/macos/fake/FakeConstants.h"
#include "tests/desktops/macos/fake/FakeSystem.h"

namespace tessarok::macos {
namespace {

using fakemac::Data;
using fakemac::fakeSystem;
using fakemac::InputSource;
using fakemac::Number;
using fakemac::String;

constexpr std::uint32_t kKeyboard = 40;

class MacInputSourcesTest : public testing::Test {
 protected:
  void TearDown() override {
    fakeSystem().uninstallAll();
    fakeSystem().makeCurrent(nullptr);
    EXPECT_EQ(fakemac::liveObjects(), 0U);
  }

  /// The identifiers of the enabled layouts; "-" for one without.
  std::vector<std::string> identifiers() {
    std::vector<std::string> found;
    for (const auto& layout : sources.enabledLayouts())
      found.push_back(layout->identifier().value_or("-"));
    return found;
  }

  MacInputSources sources;
};

using MacInputSourcesDeathTest = MacInputSourcesTest;

TEST_F(MacInputSourcesTest, ListsSelectableLayoutsInTheSystemsOrder) {
  fakeSystem().install("com.apple.keylayout.British");
  fakeSystem().install("com.apple.keylayout.Russian");
  fakeSystem()
      .install("not.selectable")
      .set(kTISPropertyInputSourceIsSelectCapable, CFRetain(kCFBooleanFalse));
  fakeSystem().install("an.input.method").set(kTISPropertyInputSourceType, new String("method"));
  fakeSystem().install("a.palette").set(kTISPropertyInputSourceCategory, new String("palette"));
  fakeSystem().install("without.type").remove(kTISPropertyInputSourceType);
  EXPECT_EQ(identifiers(), (std::vector<std::string>{"com.apple.keylayout.British",
                                                     "com.apple.keylayout.Russian"}));
}

TEST_F(MacInputSourcesTest, AnAbsentListIsEmpty) {
  fakeSystem().install("com.apple.keylayout.US");
  fakeSystem().listIsAbsent = true;
  EXPECT_TRUE(identifiers().empty());
}

TEST_F(MacInputSourcesTest, StrayElementsAreLeftOut) {
  fakeSystem().install("com.apple.keylayout.US");
  String stray("stray");
  fakeSystem().strayElements = {nullptr, &stray};
  EXPECT_EQ(identifiers(), std::vector<std::string>{"com.apple.keylayout.US"});
  fakeSystem().strayElements.clear();
}

TEST_F(MacInputSourcesTest, AnIdentifierMayBeMissingOrNoString) {
  fakeSystem().install("a").remove(kTISPropertyInputSourceID);
  fakeSystem().install("b").set(kTISPropertyInputSourceID, new Number(1));
  EXPECT_EQ(identifiers(), (std::vector<std::string>{"-", "-"}));
}

TEST_F(MacInputSourcesTest, HandlesOutliveTheirList) {
  auto& installed = fakeSystem().install("com.apple.keylayout.US");
  const auto layouts = sources.enabledLayouts();
  ASSERT_EQ(layouts.size(), 1U);
  EXPECT_EQ(installed.references, 2);
  fakeSystem().uninstallAll();
  EXPECT_EQ(layouts.front()->identifier(), "com.apple.keylayout.US");
}

TEST_F(MacInputSourcesTest, TellsTheCurrentOne) {
  EXPECT_EQ(sources.current(), std::nullopt);
  fakeSystem().makeCurrent(&fakeSystem().install("com.apple.keylayout.RussianWin"));
  EXPECT_EQ(sources.current(), "com.apple.keylayout.RussianWin");
  fakeSystem().makeCurrent(&fakeSystem().install("раскладка"));
  EXPECT_EQ(sources.current(), "раскладка");
  fakeSystem().current->set(kTISPropertyInputSourceID, new Number(1));
  EXPECT_EQ(sources.current(), std::nullopt);
  fakeSystem().current->remove(kTISPropertyInputSourceID);
  EXPECT_EQ(sources.current(), std::nullopt);
}

TEST_F(MacInputSourcesTest, AnAnswerStaysWhatItWas) {
  fakeSystem().makeCurrent(&fakeSystem().install("com.apple.keylayout.US"));
  const auto& first = sources.current();
  fakeSystem().makeCurrent(&fakeSystem().install("com.apple.keylayout.Russian"));
  const auto& second = sources.current();
  fakeSystem().makeCurrent(nullptr);
  const auto& none = sources.current();
  EXPECT_EQ(first, "com.apple.keylayout.US");
  EXPECT_EQ(second, "com.apple.keylayout.Russian");
  EXPECT_EQ(none, std::nullopt);
  fakeSystem().makeCurrent(fakeSystem().installed.front());
  EXPECT_EQ(&sources.current(), &first);
}

TEST_F(MacInputSourcesTest, SelectsAndReportsRefusal) {
  fakeSystem().install("com.apple.keylayout.US");
  auto& russian = fakeSystem().install("com.apple.keylayout.Russian");
  const auto layouts = sources.enabledLayouts();
  EXPECT_TRUE(sources.select(*layouts[1]));
  EXPECT_EQ(fakeSystem().current, &russian);
  fakeSystem().failsNextSelection = true;
  EXPECT_FALSE(sources.select(*layouts[0]));
  EXPECT_EQ(fakeSystem().current, &russian);
}

TEST_F(MacInputSourcesDeathTest, AMissingConstantIsFatal) {
  // The fake says what it was misused for; here the program ends before.
  EXPECT_EXIT(
      {
        fakemac::forgetKeyboardCategoryConstant();
        static_cast<void>(sources.enabledLayouts());
      },
      testing::KilledBySignal(SIGABRT), "^$");
}

class MacInputSourceTest : public MacInputSourcesTest {
 protected:
  /// A handle to the one installed source.
  MacInputSource handle() {
    return MacInputSource(CfRef<TISInputSourceRef>::retain(
        fakemac::refTo<TISInputSourceRef>(fakeSystem().installed.front())));
  }
  InputSource& install() { return fakeSystem().install("com.apple.keylayout.Russian"); }
};

TEST_F(MacInputSourceTest, TranslatesKeysPlainAndWithShift) {
  install();
  EXPECT_TRUE(handle().hasLayoutData());
  EXPECT_EQ(handle().translate(12, false, kKeyboard), u"й");
  EXPECT_EQ(handle().translate(12, true, 91), u"Й");
  EXPECT_EQ(fakeSystem().translatedFor, (std::vector<std::uint32_t>{kKeyboard, 91}));
}

TEST_F(MacInputSourceTest, WithoutLayoutDataThereIsNothingToTranslate) {
  install().remove(kTISPropertyUnicodeKeyLayoutData);
  EXPECT_FALSE(handle().hasLayoutData());
  EXPECT_EQ(handle().translate(12, false, kKeyboard), u"");
  EXPECT_TRUE(fakeSystem().translatedFor.empty());
}

TEST_F(MacInputSourceTest, LayoutDataOfAnotherTypeIsNone) {
  install().set(kTISPropertyUnicodeKeyLayoutData, new String("no data"));
  EXPECT_FALSE(handle().hasLayoutData());
}

TEST_F(MacInputSourceTest, LayoutDataShorterThanFortyBytesIsNone) {
  auto bytes = fakemac::layoutBytes(true);
  bytes.resize(39);
  install().set(kTISPropertyUnicodeKeyLayoutData, new Data(bytes));
  EXPECT_FALSE(handle().hasLayoutData());
  EXPECT_EQ(handle().translate(12, false, kKeyboard), u"");
  EXPECT_TRUE(fakeSystem().translatedFor.empty());

  bytes.resize(40);
  fakeSystem().installed.front()->set(kTISPropertyUnicodeKeyLayoutData, new Data(bytes));
  EXPECT_EQ(handle().translate(12, false, kKeyboard), u"й");
}

TEST_F(MacInputSourceTest, AnErrorOfTranslationGivesNothing) {
  install();
  fakeSystem().keyErrors[12] = -25340;
  EXPECT_EQ(handle().translate(12, false, kKeyboard), u"");
  EXPECT_EQ(handle().translate(13, false, kKeyboard), u"ц");
}

TEST_F(MacInputSourceTest, AKeyMayGiveSeveralUnitsOrNone) {
  install();
  fakeSystem().keyTexts[{12, false}] = u"йц";
  fakeSystem().keyTexts[{13, false}] = u"123456789";
  EXPECT_EQ(handle().translate(12, false, kKeyboard), u"йц");
  EXPECT_EQ(handle().translate(13, false, kKeyboard), u"12345678");
  EXPECT_EQ(handle().translate(63, false, kKeyboard), u"");
}

}  // namespace
}  // namespace tessarok::macos

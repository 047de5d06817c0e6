// Retyping, called directly, and conversion by hand as a function of the word.

#include <gtest/gtest.h>

#include "desktops/plain/PlainEvent.h"
#include "desktops/plain/PlainEventSource.h"
#include "desktops/virtual/VirtualEvent.h"
#include "platform/EventFlags.h"
#include "tests/support/FakeDesktop.h"
#include "typing/KeyTap.h"
#include "words/LayoutMap.h"

namespace tessarok {
namespace {

using platform::EventType;
using testing::FakeDesktop;
using virtualdesktop::VirtualEvent;

/// Keeps what is posted.
class RecordingProxy final : public platform::EventTapProxy {
 public:
  void post(const platform::Event& event) override {
    events.push_back(std::make_unique<VirtualEvent>(static_cast<const VirtualEvent&>(event)));
  }
  std::vector<std::unique_ptr<VirtualEvent>> events;
};

/// Makes as many events as it is told, and then none.
class LimitedEvents final : public platform::Events {
 public:
  explicit LimitedEvents(int limit) : left_(limit) {}
  std::unique_ptr<platform::EventSource> createPrivateSource() override {
    return std::make_unique<plain::PlainEventSource>();
  }
  std::unique_ptr<platform::Event> createKeyboardEvent(platform::EventSource&, std::int64_t,
                                                       bool) override {
    return left_-- > 0 ? std::make_unique<VirtualEvent>() : nullptr;
  }

 private:
  int left_;
};

class KeyTapReplaceTest : public ::testing::Test {
 protected:
  /// Calls `replace` from within the handling of an event, without which nothing can be posted.
  bool replace(std::size_t deleteCount, std::string_view text,
               std::optional<Language> switchTo = std::nullopt,
               platform::Event* actionEvent = nullptr) {
    bool posted = false;
    keyTap.onPauseChange = [&] {
      if (beforeReplacing) beforeReplacing();
      posted = keyTap.replace(deleteCount, text, switchTo, actionEvent);
    };
    VirtualEvent pauseKey;
    pauseKey.code = keyCodes::grave;
    keyTap.handle(&proxy, EventType::keyDown, &pauseKey);
    keyTap.onPauseChange = nullptr;
    return posted;
  }

  FakeDesktop desktop;
  KeyTap& keyTap = KeyTap::shared();
  RecordingProxy proxy;
  /// What happens while the event is being handled.
  std::function<void()> beforeReplacing;
};

TEST_F(KeyTapReplaceTest, NothingToDoIsDone) {
  EXPECT_TRUE(replace(0, ""));
  EXPECT_TRUE(proxy.events.empty());
  EXPECT_TRUE(desktop.inputSources().selections.empty());
}

TEST_F(KeyTapReplaceTest, ErasesTypesAndPostsTheHeldKeyInThisOrder) {
  VirtualEvent held;
  held.code = KeyTap::kReturn;
  held.modifiers = platform::eventFlags::shift;
  held.autorepeat = true;
  held.payload = u"\r";
  EXPECT_TRUE(replace(3, "слово", std::nullopt, &held));
  ASSERT_EQ(proxy.events.size(), 18u);
  const std::u16string text = u"слово";
  for (std::size_t i = 0; i < 18; ++i) {
    const auto& event = *proxy.events[i];
    EXPECT_EQ(event.type, i % 2 == 0 ? EventType::keyDown : EventType::keyUp) << i;
    EXPECT_EQ(event.userData, 0x5453524B) << i;
    EXPECT_FALSE(event.autorepeat) << i;
    if (i < 6) {
      EXPECT_EQ(event.code, 51) << i;
      EXPECT_TRUE(event.payload.empty()) << i;
      EXPECT_EQ(event.modifiers, 0u) << i;
    } else if (i < 16) {
      EXPECT_EQ(event.code, 0) << i;
      EXPECT_EQ(event.payload, std::u16string(1, text[(i - 6) / 2])) << i;
      EXPECT_EQ(event.modifiers, 0u) << i;
    } else {
      EXPECT_EQ(event.code, KeyTap::kReturn) << i;
      EXPECT_EQ(event.payload, u"\r") << i;
      EXPECT_EQ(event.modifiers, platform::eventFlags::shift) << i;
    }
  }
  // The event in hand stays as it was.
  EXPECT_EQ(held.userData, 0);
  EXPECT_TRUE(held.autorepeat);
}

TEST_F(KeyTapReplaceTest, AnEmojiGoesOutInOnePairOfEvents) {
  EXPECT_TRUE(replace(0, "👍"));
  ASSERT_EQ(proxy.events.size(), 2u);
  EXPECT_EQ(proxy.events[0]->payload, u"👍");
  EXPECT_EQ(proxy.events[1]->payload, u"👍");
}

TEST_F(KeyTapReplaceTest, ACharacterOfTwentyUnitsGoesOutAndOneOfTwentyOneDoesNot) {
  std::string character = "a";
  for (int i = 0; i < 19; ++i)
    character += "\u0301";
  EXPECT_TRUE(replace(1, "x" + character));
  EXPECT_EQ(proxy.events.size(), 6u);
  proxy.events.clear();
  character += "\u0301";
  EXPECT_FALSE(replace(1, "x" + character));
  EXPECT_TRUE(proxy.events.empty());
}

TEST_F(KeyTapReplaceTest, OutsideAnEventNothingIsPosted) {
  EXPECT_FALSE(keyTap.replace(1, "a", Language::russian, nullptr));
  EXPECT_TRUE(proxy.events.empty());
  EXPECT_TRUE(desktop.inputSources().selections.empty());
}

TEST_F(KeyTapReplaceTest, WhateverFailsNothingIsPostedAndNoLayoutSelected) {
  desktop.base().events().failsNextSource = true;
  EXPECT_FALSE(replace(2, "ab", Language::russian));
  desktop.base().events().failsNextEvent = true;
  EXPECT_FALSE(replace(2, "ab", Language::russian));
  EXPECT_TRUE(proxy.events.empty());
  EXPECT_TRUE(desktop.inputSources().selections.empty());
  EXPECT_TRUE(replace(2, "ab", Language::russian));
  EXPECT_EQ(proxy.events.size(), 8u);
}

TEST_F(KeyTapReplaceTest, WhicheverEventCannotBeMadeNothingIsPosted) {
  // Two events for each Backspace and for each Character.
  for (int made = 0; made < 8; ++made) {
    LimitedEvents events(made);
    desktop.replaced.events = &events;
    EXPECT_FALSE(replace(2, "ab", Language::russian)) << made;
  }
  EXPECT_TRUE(proxy.events.empty());
  EXPECT_TRUE(desktop.inputSources().selections.empty());
  LimitedEvents events(8);
  desktop.replaced.events = &events;
  EXPECT_TRUE(replace(2, "ab", Language::russian));
  EXPECT_EQ(proxy.events.size(), 8u);
}

TEST_F(KeyTapReplaceTest, APasswordFieldThatOpensMeanwhileGetsNothing) {
  beforeReplacing = [&] { desktop.secureInput().on = true; };
  EXPECT_FALSE(replace(1, "a", Language::russian));
  EXPECT_TRUE(proxy.events.empty());
  EXPECT_TRUE(desktop.inputSources().selections.empty());
}

/// A key that can be copied so many times.
class FailingEvent final : public plain::PlainEvent {
 public:
  explicit FailingEvent(int copies) : left_(copies) { code = KeyTap::kTab; }
  [[nodiscard]] std::unique_ptr<platform::Event> copy() const override {
    return left_-- > 0 ? std::make_unique<VirtualEvent>() : nullptr;
  }

 private:
  mutable int left_;
};

TEST_F(KeyTapReplaceTest, AHeldKeyThatCannotBeCopiedPostsNothing) {
  for (const int copies : {0, 1}) {
    FailingEvent held(copies);
    EXPECT_FALSE(replace(1, "a", Language::russian, &held)) << copies;
  }
  EXPECT_TRUE(proxy.events.empty());
  EXPECT_TRUE(desktop.inputSources().selections.empty());
}

TEST_F(KeyTapReplaceTest, TheLayoutIsSelectedAfterTheEvents) {
  EXPECT_TRUE(replace(1, "я", Language::russian));
  EXPECT_EQ(desktop.inputSources().selections,
            std::vector<std::string>{"com.apple.keylayout.RussianWin"});
}

TEST_F(KeyTapReplaceTest, ARefusedLayoutDoesNotUndoTheReplacement) {
  desktop.inputSources().refuses["com.apple.keylayout.RussianWin"] = true;
  EXPECT_TRUE(replace(1, "я", Language::russian));
  EXPECT_EQ(proxy.events.size(), 4u);
}

// What a conversion by hand makes of a word.

void expectSwap(std::string_view word, std::string_view converted,
                std::optional<Language> language) {
  const auto swap = KeyTap::manualSwap(word);
  ASSERT_TRUE(swap.has_value()) << word;
  EXPECT_EQ(swap->converted, converted);
  EXPECT_EQ(swap->language, language) << word;
}

TEST(KeyTapManualSwap, LettersDecideTheDirection) {
  expectSwap("ghbdtn", "привет", Language::russian);
  expectSwap("руддщ", "hello", Language::english);
  expectSwap("Ghbdtn1", "Привет1", Language::russian);
}

TEST(KeyTapManualSwap, AnEvenMixtureCountsAsRussian) {
  expectSwap("йцуqwe", "qweqwe", Language::english);
  expectSwap("йцqwe", "йцйцу", Language::russian);
}

TEST(KeyTapManualSwap, KeysOfRussianLettersNeedNoLetters) {
  expectSwap(";", "ж", Language::russian);
  expectSwap("[]", "хъ", Language::russian);
  expectSwap("1;", "1ж", Language::russian);
}

TEST(KeyTapManualSwap, AConversionWithoutLettersSelectsNothing) {
  expectSwap("ж", ";", std::nullopt);
  expectSwap("ж1", ";1", std::nullopt);
}

TEST(KeyTapManualSwap, WhatNoLayoutTypesIsLeftAlone) {
  for (const auto* word : {"", "123", "_", "-", "/", "?", "éa", "привїт", "字", "a\u0301"}) {
    EXPECT_FALSE(KeyTap::manualSwap(word).has_value()) << word;
  }
}

TEST(KeyTapManualSwap, WithoutMapsNothingIsConverted) {
  LayoutMap::install({}, {});
  EXPECT_FALSE(KeyTap::manualSwap("ghbdtn").has_value());
  EXPECT_FALSE(KeyTap::manualSwap("привет").has_value());
  EXPECT_FALSE(KeyTap::manualSwap(";").has_value());
}

TEST(KeyTapManualSwap, ALetterOfBothLayoutsOnOneKeyIsLeftAlone) {
  auto enToRu = LayoutMap::enToRu();
  auto ruToEn = LayoutMap::ruToEn();
  enToRu[U'é'] = U'é';
  ruToEn[U'é'] = U'é';
  ASSERT_TRUE(LayoutMap::install(enToRu, ruToEn));
  EXPECT_FALSE(KeyTap::manualSwap("é").has_value());
  EXPECT_FALSE(KeyTap::manualSwap("éé1").has_value());
}

}  // namespace
}  // namespace tessarok

#include <gtest/gtest.h>
#include <string>

#include "desktops/virtual/TemporaryDirectory.h"
#include "desktops/virtual/VirtualDesktop.h"
#include "tests/support/PartlyVirtualDesktop.h"
#include "typing/CommandWords.h"

namespace tessarok {
namespace {

using Confidence = Detector::Confidence;
using Part = platform::TextContext::Part;

/// A place in a command line, and one program.
class Context final : public platform::TextContext {
 public:
  Part part() override { return now; }
  bool isProgram(std::string_view name) override {
    ++questions;
    return name == program;
  }
  Part now = Part::text;
  std::string program;
  int questions = 0;
};

class Desktop final : public testing::PartlyVirtualDesktop {
 public:
  virtualdesktop::VirtualDesktop& base() override { return base_; }
  platform::TextContext& textContext() override { return context; }
  Context context;

 private:
  virtualdesktop::TemporaryDirectory home_;
  virtualdesktop::VirtualDesktop base_{home_.path(), std::nullopt};
};

class CommandWords : public ::testing::Test {
 protected:
  CommandWords() { platform::setDesktop(desktop_); }

  bool stays(Part part, std::string_view word, Confidence confidence = Confidence::high,
             std::int64_t ruStreak = 0, std::size_t trim = 0) {
    desktop_.context.now = part;
    const Detector::Decision decision{Language::russian, confidence, trim};
    return commandWords::mustStay(word, decision, ruStreak);
  }

  Desktop desktop_;
};

TEST_F(CommandWords, InATextNoWordHasToStay) {
  desktop_.context.program = "jq";
  EXPECT_FALSE(stays(Part::text, "jq"));
  EXPECT_EQ(desktop_.context.questions, 0);
}

TEST_F(CommandWords, InPlaceOfACommandOnlyALongSureWordIsConverted) {
  EXPECT_FALSE(stays(Part::commandName, "ghbdtn"));
  EXPECT_FALSE(stays(Part::commandName, "vjcnf"));
  EXPECT_TRUE(stays(Part::commandName, "ghbd"));
  EXPECT_TRUE(stays(Part::commandName, "ghbdtn", Confidence::medium));
}

TEST_F(CommandWords, AProgramStays) {
  desktop_.context.program = "wtypehd";
  EXPECT_TRUE(stays(Part::commandName, "wtypehd"));
  EXPECT_TRUE(stays(Part::commandArgument, "wtypehd"));
  // What stays as typed behind it is no part of its name.
  EXPECT_TRUE(stays(Part::commandName, "wtypehd,", Confidence::high, 0, 1));
  EXPECT_FALSE(stays(Part::commandName, "wtypehdd"));
}

TEST_F(CommandWords, OptionsStay) {
  EXPECT_TRUE(stays(Part::commandOption, "ghbdtn"));
  EXPECT_TRUE(stays(Part::commandOption, "ghbdtn", Confidence::high, 3));
}

TEST_F(CommandWords, AShortArgumentIsConvertedBehindRussianWords) {
  EXPECT_TRUE(stays(Part::commandArgument, "yf"));
  EXPECT_FALSE(stays(Part::commandArgument, "yf", Confidence::high, 1));
  EXPECT_FALSE(stays(Part::commandArgument, "vbh"));
}

TEST_F(CommandWords, ACyrillicWordIsFixedAsEverywhere) {
  desktop_.context.now = Part::commandName;
  const Detector::Decision decision{Language::english, Confidence::medium, 0};
  EXPECT_FALSE(commandWords::mustStay("пше", decision, 0));
  EXPECT_EQ(desktop_.context.questions, 0);
}

TEST_F(CommandWords, ACommandIsAProgramWhereOneIsAskedFor) {
  desktop_.context.program = "jq";
  desktop_.context.now = Part::commandName;
  EXPECT_TRUE(commandWords::isCommand("jq"));
  EXPECT_FALSE(commandWords::isCommand("ok"));
  desktop_.context.now = Part::commandArgument;
  EXPECT_FALSE(commandWords::isCommand("jq"));
}

}  // namespace
}  // namespace tessarok

#include <gtest/gtest.h>
#include <string>

#include "desktops/layouts/KeyTable.h"
#include "desktops/web/KeyNames.h"

namespace tessarok::web {
namespace {

TEST(KeyNames, LettersAndDigitsAreThoseOfTheEnglishTable) {
  const auto& english = layouts::KeyTable::english();
  for (char letter = 'A'; letter <= 'Z'; ++letter) {
    const auto code = keyNames::codeOf(std::string("Key") + letter);
    ASSERT_TRUE(code) << letter;
    EXPECT_EQ(english.character(*code, true), letter);
  }
  for (char digit = '0'; digit <= '9'; ++digit) {
    const auto code = keyNames::codeOf(std::string("Digit") + digit);
    ASSERT_TRUE(code) << digit;
    EXPECT_EQ(english.character(*code, false), digit);
  }
}

TEST(KeyNames, SignsAreThoseOfTheEnglishTable) {
  const std::pair<const char*, char> signs[] = {
      {"Backquote", '`'},    {"Minus", '-'},  {"Equal", '='},     {"BracketLeft", '['},
      {"BracketRight", ']'}, {"Quote", '\''}, {"Semicolon", ';'}, {"Comma", ','},
      {"Period", '.'},       {"Slash", '/'},  {"Backslash", '\\'}};
  for (const auto& [name, sign] : signs) {
    const auto code = keyNames::codeOf(name);
    ASSERT_TRUE(code) << name;
    EXPECT_EQ(layouts::KeyTable::english().character(*code, false), sign);
  }
}

TEST(KeyNames, OthersMeanNothing) {
  for (const auto* name : {"", "F5", "ShiftLeft", "IntlBackslash", "Numpad1", "keyA", "KeyAA"})
    EXPECT_FALSE(keyNames::codeOf(name)) << name;
}

}  // namespace
}  // namespace tessarok::web

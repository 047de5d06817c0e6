// What is asked of any text, measured: the input over and over makes a short and a long text, and
// a byte of the long one must not take more time.

#include <array>
#include <utility>

#include "Check.h"
#include "Input.h"
#include "tests/support/Growth.h"
#include "text/Text.h"
#include "words/UserDict.h"

namespace tessarok::fuzz {
namespace {

using testing::Growth;

constexpr std::array<std::pair<const char*, void (*)(std::string_view)>, 9> kOperations = {{
    {"counting is linear", [](std::string_view text) { static_cast<void>(text::count(text)); }},
    {"cutting the last Character is linear",
     [](std::string_view text) { static_cast<void>(text::withoutLast(text, 1)); }},
    {"cutting many Characters is linear",
     [](std::string_view text) { static_cast<void>(text::last(text, text.size() / 8)); }},
    {"lower-casing is linear",
     [](std::string_view text) { static_cast<void>(text::lowercased(text)); }},
    {"composing is linear", [](std::string_view text) { static_cast<void>(text::composed(text)); }},
    {"trimming is linear", [](std::string_view text) { static_cast<void>(text::trimmed(text)); }},
    {"going to UTF-16 and back is linear",
     [](std::string_view text) {
       std::string back;
       text::assignUtf16(text::utf16(text), back);
     }},
    {"checking UTF-8 is linear",
     [](std::string_view text) { static_cast<void>(text::isValidUtf8(text)); }},
    {"reading a list is linear",
     [](std::string_view text) { static_cast<void>(UserDict::parse(text)); }},
}};

void checkCuts(std::string_view text) {
  const auto all = text::count(text);
  for (std::size_t n = 0; n <= all; ++n) {
    const auto cut = text::withoutLast(text, n);
    check(text::count(cut) == all - n, "so many Characters are cut as were asked for");
    check(text::last(text, n).size() + cut.size() == text.size(), "nothing falls between");
  }
}

}  // namespace
}  // namespace tessarok::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tessarok::fuzz;
  // A longer pattern would not be repeated in the short text.
  constexpr std::size_t kLongest = 256;
  if (size == 0 || size > kLongest) return 0;
  const auto text = textOf(data, size);
  checkCuts(text);
  for (const auto& [statement, operation] : kOperations)
    check(Growth::of(text, operation) <= Growth::kMost, statement);
  return 0;
}

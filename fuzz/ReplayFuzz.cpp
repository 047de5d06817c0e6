// Replay files: the whole program from launch to quit. What a run leaves in the process, such as
// learned words, is there in the next one, as after a second launch.

#include <algorithm>
#include <sstream>
#include <string>

#include "Check.h"
#include "Input.h"
#include "desktops/virtual/Replay.h"
#include "desktops/virtual/ReplayError.h"
#include "text/Text.h"

namespace tessarok::fuzz {
namespace {

/// Waits are allowed to be long, and take as long as the ticks in them; not here.
bool waitsLong(std::string_view line) {
  const auto parsed = nlohmann::json::parse(line, nullptr, false);
  if (!parsed.is_object() || !parsed.contains("wait") || !parsed["wait"].is_number()) return false;
  return parsed["wait"].get<double>() > 1000;
}

void checkPrinted(const std::string& printed) {
  for (const auto line : linesOf(printed)) {
    const auto object = nlohmann::json::parse(line, nullptr, false);
    check(object.is_object(), "one object is printed on a line");
    if (!object.contains("text")) continue;
    check(text::isValidUtf8(object["text"].get<std::string>()), "the screen shows text");
    if (!object.contains("caret")) continue;
    check(object["caret"] <= text::count(object["text"].get<std::string>()),
          "the caret is in the text");
  }
}

}  // namespace
}  // namespace tessarok::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tessarok;
  const auto text = fuzz::textOf(data, size);
  const auto lines = fuzz::linesOf(text);
  if (std::any_of(lines.begin(), lines.end(), fuzz::waitsLong)) return 0;
  std::istringstream in{std::string(text)};
  std::ostringstream out;
  try {
    virtualdesktop::Replay replay(std::nullopt, TESSAROK_TEST_DATA);
    replay.run(in, out);
  } catch (const virtualdesktop::ReplayError& error) {
    fuzz::check(std::string_view(error.what()).starts_with("line "), "an error names its line");
  }
  fuzz::checkPrinted(out.str());
  return 0;
}

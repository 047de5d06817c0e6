// Plays a story of tests/stories through the macOS services and compares every line that it
// prints, as the story's check on the virtual desktop does: what a person sees must not depend on
// the desktop.
//
// usage: tessarok_macos_story_check DATA-DIRECTORY STORY

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>

#include "desktops/virtual/TemporaryDirectory.h"
#include "tests/desktops/macos/Mac.h"
#include "tests/desktops/macos/StoryPlayer.h"

namespace {

using nlohmann::json;
using tessarok::macostest::Mac;
using tessarok::macostest::StoryPlayer;

constexpr std::string_view kExpectation = "#= ";

/// Where in the story something is.
struct Place {
  std::string story;
  std::size_t line;
};

void report(const Place& place, const std::string& message) {
  std::cerr << place.story << ":" << place.line << ": " << message << '\n';
}

/// Whether what was printed is what the story expects.
bool matches(const Place& place, std::optional<json>& printed, std::string_view expected) {
  const auto wanted = json::parse(expected);
  if (!printed) {
    report(place, "nothing was printed");
    return false;
  }
  const bool same = *printed == wanted;
  if (!same) report(place, "\n  expected " + wanted.dump() + "\n  printed  " + printed->dump());
  printed.reset();
  return same;
}

int run(const std::string& data, const std::string& story) {
  std::ifstream file(story);
  if (!file) {
    report({story, 0}, "cannot be read");
    return 1;
  }
  const tessarok::virtualdesktop::TemporaryDirectory home;
  Mac mac(home.path(), data);
  StoryPlayer player(mac);
  std::optional<json> printed;
  int failures = 0;
  std::size_t comparisons = 0;
  std::string line;
  for (Place place{story, 1}; std::getline(file, line); ++place.line) {
    if (line.starts_with(kExpectation)) {
      ++comparisons;
      if (!matches(place, printed, std::string_view(line).substr(kExpectation.size()))) ++failures;
      continue;
    }
    if (line.empty() || line.front() == '#') continue;
    if (auto answer = player.play(line)) printed = std::move(answer);
  }
  player.finish();
  if (comparisons == 0) {
    report({story, 0}, "the story expects nothing");
    ++failures;
  }
  if (const auto held = Mac::leftovers(); !held.empty()) {
    report({story, 0}, "still held after the end: " + held);
    ++failures;
  }
  return failures == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: tessarok_macos_story_check DATA-DIRECTORY STORY\n";
    return 2;
  }
  ::setenv("TESSAROK_DEBUG", "", 1);
  ::unsetenv("TESSAROK_DEBUG_PATH");
  try {
    return run(argv[1], argv[2]);
  } catch (const std::exception& error) {
    std::cerr << argv[2] << ": " << error.what() << '\n';
    return 1;
  }
}

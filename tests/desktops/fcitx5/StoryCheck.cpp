// Plays a story of tests/stories in a text field that a real Fcitx serves, and compares the text,
// the caret and the layout with the virtual desktop's, behind every line.
//
// usage: tessarok_fcitx5_story_check STORY

#include <algorithm>
#include <future>
#include <iostream>
#include <vector>

#include "tests/desktops/fcitx5/FcitxProcess.h"
#include "tests/desktops/fcitx5/StoryScript.h"
#include "tests/desktops/freedesktop/PrivateBus.h"
#include "tests/support/TestFiles.h"

namespace {

using namespace tessarok::testing;
using nlohmann::json;

/// Programs differ in what they report and in when they deal with keys.
const json kClients[] = {
    {{"reports", "nothing"}, {"keyDelay", 4}},
    {{"reports", "all"}, {"keyDelay", 30}, {"resets", true}, {"ordersEvents", true}},
};

std::string play(const StoryScript& script, const json& client) {
  const FcitxHome home(script.inputMethods);
  for (const auto& [name, text] : script.files.items())
    writeFile(home.data() / name, text.get<std::string>());
  if (!script.settings.empty()) writeFile(home.settings(), script.settings.dump());
  const json whole = {{"client", client}, {"steps", script.steps}};
  const bool needsLogin = std::any_of(script.steps.begin(), script.steps.end(),
                                      [](const json& step) { return step.contains("login"); });
  if (!needsLogin) return driveFcitx(home, whole);
  const PrivateBus bus;
  return driveFcitx(home, whole, {.system = bus.address()});
}

int run(const std::string& story) {
  const auto script = StoryScript::of(readFile(story));
  std::vector<std::future<std::string>> runs;
  for (const auto& client : kClients)
    runs.push_back(std::async(std::launch::async, play, script, client));
  int failures = 0;
  for (std::size_t i = 0; i < runs.size(); ++i) {
    const auto fault = runs[i].get();
    if (fault.empty()) continue;
    ++failures;
    std::cerr << story << ", in a program that reports " << kClients[i]["reports"] << ": " << fault
              << '\n';
  }
  return failures;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: tessarok_fcitx5_story_check STORY\n";
    return 2;
  }
  try {
    return run(argv[1]);
  } catch (const std::exception& error) {
    std::cerr << argv[1] << ": " << error.what() << '\n';
    return 1;
  }
}

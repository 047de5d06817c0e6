#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace tessarok::testing {

/// A replay story as a person at a text field lives through it: what is typed, and what must then
/// be there, which the virtual desktop tells.
struct StoryScript {
  /// Of Fcitx's group.
  std::vector<std::string> inputMethods;
  /// Files of the per-user folder, and settings.
  nlohmann::json files = nlohmann::json::object();
  nlohmann::json settings = nlohmann::json::object();
  /// Steps for the driver.
  nlohmann::json steps = nlohmann::json::array();

  /// Throws `std::runtime_error` for a story that a text field cannot tell.
  [[nodiscard]] static StoryScript of(const std::string& story);
  /// The keys for a text in the words of the driver; as for "keys" in a replay.
  [[nodiscard]] static nlohmann::json strokesFor(const std::string& keys);
};

}  // namespace tessarok::testing

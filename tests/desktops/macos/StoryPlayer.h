#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "tests/desktops/macos/Mac.h"
#include "tests/desktops/macos/StoryPrinter.h"

namespace tessarok::macostest {

/// Plays the lines of a replay on the fake Mac.
class StoryPlayer final {
 public:
  explicit StoryPlayer(Mac& mac) : mac_(mac), printer_(mac) {}

  /// Performs one line; what a "print" line prints, absent for others. Throws
  /// `std::runtime_error` for a line that the Mac does not know.
  std::optional<nlohmann::json> play(const std::string& line);
  /// After the last line.
  void finish();

 private:
  using Json = nlohmann::json;

  void launchOnce();
  void perform(const std::string& action, const Json& value);
  void setUp(const Json& value);
  void setKeyboard(const Json& value);
  void keys(const Json& value);
  void tap(const std::string& what);
  void fail(const std::string& what);
  void writeFiles(const Json& files);

  Mac& mac_;
  StoryPrinter printer_;
  bool launched_ = false;
};

}  // namespace tessarok::macostest

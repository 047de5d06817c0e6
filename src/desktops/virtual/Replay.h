#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <istream>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>
#include <string>

#include "desktops/virtual/ReplayPrinter.h"
#include "desktops/virtual/Session.h"

namespace tessarok::virtualdesktop {

/// Runs the whole program on the virtual desktop from a script: one JSON object a line in, one
/// JSON object out for every "print".
class Replay {
 public:
  /// As for `Session`.
  Replay(std::optional<std::filesystem::path> home, std::optional<std::filesystem::path> resources);

  /// Runs a script to its end. Throws `ReplayError`, whose message starts with "line N: ", at the
  /// first line that is wrong; what came before it has been carried out.
  void run(std::istream& in, std::ostream& out);

 private:
  using Json = nlohmann::json;
  using Action = void (Replay::*)(const Json& value);

  void runLine(const std::string& line);
  void perform(const std::string& name, const Json& value);
  void launchOnce();

  void setup(const Json& value);
  void setupSources(const Json& value);
  void keys(const Json& value);
  void down(const Json& value);
  void up(const Json& value);
  void click(const Json& value);
  void select(const Json& value);
  void enable(const Json& value);
  void keyboard(const Json& value);
  void secure(const Json& value);
  void trusted(const Json& value);
  void tap(const Json& value);
  void fail(const Json& value);
  void workspace(const Json& value);
  void menu(const Json& value);
  void file(const Json& value);
  void wait(const Json& value);
  void quit(const Json& value);
  void print(const Json& value);

  void setKeyboard(const Json& value);
  void writeFile(const std::string& name, const std::string& text);

  Session session_;
  ReplayPrinter printer_;
  bool launched_ = false;
  std::ostream* out_ = nullptr;
};

}  // namespace tessarok::virtualdesktop

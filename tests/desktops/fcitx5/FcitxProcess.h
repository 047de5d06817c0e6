#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "desktops/virtual/TemporaryDirectory.h"

namespace tessarok::testing {

/// A person's home directory as Fcitx finds it, with the addon under test in it.
class FcitxHome {
 public:
  /// `inputMethods` are the group's, such as "keyboard-us".
  explicit FcitxHome(const std::vector<std::string>& inputMethods);

  [[nodiscard]] const std::filesystem::path& path() const { return folder_.path(); }
  /// The per-user folder of the corrector, and its settings.
  [[nodiscard]] std::filesystem::path data() const { return path() / "data" / "Tessarok"; }
  [[nodiscard]] std::filesystem::path settings() const {
    return path() / "config" / "Tessarok" / "settings.json";
  }
  /// Variables that make this home the person's and cut off the session around the test.
  [[nodiscard]] const std::map<std::string, std::string>& environment() const {
    return environment_;
  }

 private:
  virtualdesktop::TemporaryDirectory folder_;
  std::map<std::string, std::string> environment_;
};

/// The addresses of buses; empty for none.
struct Buses {
  /// On this one the driver plays the login manager.
  std::string system = {};
  std::string session = {};
};

/// Has the driver addon carry out a script in a Fcitx of its own, without any display. What went
/// wrong; empty when everything came out.
[[nodiscard]] std::string driveFcitx(const FcitxHome& home, const nlohmann::json& script,
                                     const Buses& buses = {});

}  // namespace tessarok::testing

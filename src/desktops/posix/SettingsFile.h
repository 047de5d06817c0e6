#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "platform/Files.h"
#include "platform/SystemLog.h"
#include "platform/UserDefaults.h"

namespace tessarok::posix {

/// The person's switches in a file, a JSON object of booleans; a few settings are texts. A file
/// that cannot be used is reported once and left as it is: changes then last until the program
/// ends. Main thread.
class SettingsFile final : public platform::UserDefaults {
 public:
  /// Read on first use. `files` and `log` outlive this object.
  SettingsFile(std::filesystem::path file, platform::Files& files, platform::SystemLog& log);

  /// $XDG_CONFIG_HOME/Tessarok/settings.json, or the same below ~/.config.
  [[nodiscard]] static std::filesystem::path locationFor(const std::filesystem::path& home);

  std::optional<bool> boolean(std::string_view key) override;
  void setBoolean(std::string_view key, bool value) override;
  /// A setting that is a text; absent when it was never set or is none.
  [[nodiscard]] std::optional<std::string> string(std::string_view key);
  void setString(std::string_view key, std::string value);
  /// Reads the file again, which somebody else may have written.
  void reload();

 private:
  using Value = std::variant<bool, std::string>;
  using Values = std::map<std::string, Value, std::less<>>;

  [[nodiscard]] static Values parse(const std::string& text);

  void load();
  void set(std::string_view key, Value value);
  void save();
  void report(const std::string& problem);

  std::filesystem::path file_;
  platform::Files& files_;
  platform::SystemLog& log_;
  Values values_;
  bool isLoaded_ = false;
  /// The file holds something that must not be overwritten.
  bool isUnusable_ = false;
  /// A change could not be saved; reading the file again would lose it.
  bool isUnsaved_ = false;
  bool isReported_ = false;
};

}  // namespace tessarok::posix

#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "desktops/posix/ThreadQueue.h"
#include "platform/Failure.h"
#include "platform/Files.h"
#include "platform/SystemLog.h"
#include "platform/UserDefaults.h"

namespace tessarok::posix {

/// The person's switches in a file, a JSON object of booleans; a few settings are texts or lists of
/// texts. A file that cannot be used is reported once and left as it is: changes then last until
/// the program ends. Main thread; what is changed is in force at once and saved on a thread of its
/// own, because keys wait while the main one does.
class SettingsFile final : public platform::UserDefaults {
 public:
  /// Read on first use. Its end waits until all is saved. `files` and `log` outlive this object.
  SettingsFile(std::filesystem::path file, platform::Files& files, platform::SystemLog& log);

  /// $XDG_CONFIG_HOME/Tessarok/settings.json, or the same below ~/.config.
  [[nodiscard]] static std::filesystem::path locationFor(const std::filesystem::path& home);

  std::optional<bool> boolean(std::string_view key) override;
  void setBoolean(std::string_view key, bool value) override;
  /// A setting that is a text; absent when it was never set or is none.
  [[nodiscard]] std::optional<std::string> string(std::string_view key);
  void setString(std::string_view key, std::string value);
  /// A setting that is a list of texts; empty when it was never set or is none.
  [[nodiscard]] std::vector<std::string> strings(std::string_view key);
  /// Why the file is not used, in the person's language; absent when it is, and when there is none.
  [[nodiscard]] std::optional<std::string> problem();
  /// Reads the file, once. From any thread, when nothing else is called meanwhile or when reading
  /// is left to it.
  void prepare();
  /// From now on no other call reads the file for the first time: until `prepare` has, nothing is
  /// known but what was set. For a thread that must not wait for the disk.
  void leaveReadingToPrepare() { isReadOnUse_ = false; }
  /// Reads the file again, which somebody else may have written.
  void reload();
  /// Waits until all changes are saved, as far as they can be.
  void flush();

 private:
  using Value = std::variant<bool, std::string, std::vector<std::string>>;
  using Values = std::map<std::string, Value, std::less<>>;

  [[nodiscard]] static Values parse(const std::string& text);

  [[nodiscard]] std::optional<Value> value(std::string_view key);
  [[nodiscard]] bool hasUnsaved();
  [[nodiscard]] std::uint64_t saves();
  void load();
  [[nodiscard]] std::optional<Values> readFile();
  void set(std::string_view key, Value value);
  void save();
  platform::Failure write(const Values& values);
  void report(const std::string& problem);

  std::filesystem::path file_;
  platform::Files& files_;
  platform::SystemLog& log_;
  bool isReadOnUse_ = true;
  std::atomic<bool> isLoaded_ = false;
  /// The file holds something that must not be overwritten.
  std::atomic<bool> isUnusable_ = false;
  std::atomic<bool> isReported_ = false;
  /// Never held while the disk is asked for something.
  std::mutex mutex_;
  Values values_;
  /// Changes that are not in the file yet; reading it again would lose them.
  Values unsaved_;
  /// How often changes came into the file.
  std::uint64_t saves_ = 0;
  /// Why the file is unusable.
  std::optional<std::string> problem_;
  /// Goes first, and finishes its work.
  ThreadQueue queue_;
};

}  // namespace tessarok::posix

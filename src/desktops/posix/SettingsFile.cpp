#include "desktops/posix/SettingsFile.h"

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

#include "desktops/posix/PersonsEnvironment.h"

namespace tessarok::posix {

namespace {

/// The library's own words without the number in brackets before them.
std::string withoutNumber(const std::string& message) {
  const auto end = message.find("] ");
  return message.starts_with('[') && end != std::string::npos ? message.substr(end + 2) : message;
}

/// Whether a setting is a text, and no switch.
bool isText(std::string_view key) {
  return key.ends_with("Key") || key == "layoutCursor" || key == "layoutTitle";
}

}  // namespace

/// Throws `std::exception` saying what is wrong with the text, and where.
SettingsFile::Values SettingsFile::parse(const std::string& text) {
  const auto object = nlohmann::json::parse(text);
  if (!object.is_object()) throw std::runtime_error("the file holds no JSON object");
  Values values;
  for (const auto& [key, value] : object.items()) {
    if (value.is_boolean() && !isText(key)) {
      values.emplace(key, value.get<bool>());
    } else if (value.is_string() && isText(key)) {
      values.emplace(key, value.get<std::string>());
    } else {
      throw std::runtime_error("\"" + key + "\" is " +
                               (isText(key) ? "no text" : "neither true nor false"));
    }
  }
  return values;
}

SettingsFile::SettingsFile(std::filesystem::path file, platform::Files& files,
                           platform::SystemLog& log)
    : file_(std::move(file)), files_(files), log_(log) {}

std::filesystem::path SettingsFile::locationFor(const std::filesystem::path& home) {
  // A relative path there is to be ignored, as the base directory rules say.
  const auto named = personsVariable("XDG_CONFIG_HOME");
  const bool isUsable = named && named->starts_with('/');
  const auto folder = isUsable ? std::filesystem::path(*named) : home / ".config";
  return folder / "Tessarok" / "settings.json";
}

std::optional<bool> SettingsFile::boolean(std::string_view key) {
  if (!isLoaded_) load();
  const auto found = values_.find(key);
  if (found == values_.end()) return std::nullopt;
  const auto* value = std::get_if<bool>(&found->second);
  return value == nullptr ? std::nullopt : std::optional(*value);
}

std::optional<std::string> SettingsFile::string(std::string_view key) {
  if (!isLoaded_) load();
  const auto found = values_.find(key);
  if (found == values_.end()) return std::nullopt;
  const auto* value = std::get_if<std::string>(&found->second);
  return value == nullptr ? std::nullopt : std::optional(*value);
}

void SettingsFile::setBoolean(std::string_view key, bool value) {
  set(key, value);
}

void SettingsFile::setString(std::string_view key, std::string value) {
  set(key, std::move(value));
}

void SettingsFile::set(std::string_view key, Value value) {
  // Another copy of the program may have saved other switches since.
  reload();
  values_.insert_or_assign(std::string(key), std::move(value));
  if (!isUnusable_) save();
}

void SettingsFile::reload() {
  if (!isUnusable_ && !isUnsaved_) load();
}

void SettingsFile::load() {
  if (!isLoaded_) files_.removeLeftovers(file_.parent_path());
  isLoaded_ = true;
  if (!files_.exists(file_)) return;
  std::string error;
  const auto text = files_.read(file_, &error);
  try {
    if (!text) throw std::runtime_error(error);
    values_ = parse(*text);
  } catch (const std::exception& fault) {
    isUnusable_ = true;
    report("could not read settings " + file_.string() + ": " + withoutNumber(fault.what()));
  }
}

void SettingsFile::save() {
  auto error = files_.createDirectories(file_.parent_path());
  if (!error) {
    auto object = nlohmann::json::object();
    for (const auto& [key, value] : values_) {
      std::visit([&, &name = key](const auto& plain) { object[name] = plain; }, value);
    }
    error = files_.writeAtomically(file_, object.dump(2) + "\n");
  }
  isUnsaved_ = error.has_value();
  if (error) report("could not save settings " + file_.string() + ": " + *error);
}

void SettingsFile::report(const std::string& problem) {
  if (std::exchange(isReported_, true)) return;
  log_.write("Tessarok: " + problem + "; changes last until the program ends");
}

}  // namespace tessarok::posix

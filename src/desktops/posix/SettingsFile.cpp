#include "desktops/posix/SettingsFile.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

#include "desktops/posix/PersonsEnvironment.h"
#include "desktops/posix/Translation.h"

namespace tessarok::posix {

namespace {

/// The text as JSON; throws `std::runtime_error` with the line in which it is none, in the person's
/// language, which the library does not speak.
nlohmann::json parseJson(const std::string& text) {
  try {
    return nlohmann::json::parse(text);
  } catch (const nlohmann::json::parse_error& error) {
    const auto read = std::min(error.byte, text.size());
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(read > 0 ? read - 1 : 0);
    const auto line = std::count(text.begin(), end, '\n') + 1;
    throw std::runtime_error(translated("line {1} is not valid JSON", {std::to_string(line)}));
  } catch (const nlohmann::json::exception&) {
    // A number that nothing can hold.
    throw std::runtime_error(translated("the file holds no JSON object"));
  }
}

/// Whether a setting is a text, and no switch.
bool isText(std::string_view key) {
  return key.ends_with("Key") || key == "layoutCursor" || key == "layoutTitle";
}

bool isList(std::string_view key) {
  return key == "fullScreen";
}

bool isListOfTexts(const nlohmann::json& value) {
  return value.is_array() && std::all_of(value.begin(), value.end(),
                                         [](const auto& element) { return element.is_string(); });
}

}  // namespace

/// Throws `std::exception` saying what is wrong with the text, and where.
SettingsFile::Values SettingsFile::parse(const std::string& text) {
  const auto object = parseJson(text);
  if (!object.is_object()) {
    throw std::runtime_error(translated("the file holds no JSON object"));
  }
  Values values;
  for (const auto& [key, value] : object.items()) {
    if (isList(key)) {
      if (!isListOfTexts(value)) {
        throw std::runtime_error(translated("\"{1}\" is no list of texts", {key}));
      }
      values.emplace(key, value.get<std::vector<std::string>>());
    } else if (value.is_boolean() && !isText(key)) {
      values.emplace(key, value.get<bool>());
    } else if (value.is_string() && isText(key)) {
      values.emplace(key, value.get<std::string>());
    } else {
      throw std::runtime_error(isText(key)
                                   ? translated("\"{1}\" is no text", {key})
                                   : translated("\"{1}\" is neither true nor false", {key}));
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
  const auto found = value(key);
  const auto* value = found ? std::get_if<bool>(&*found) : nullptr;
  return value == nullptr ? std::nullopt : std::optional(*value);
}

std::optional<std::string> SettingsFile::string(std::string_view key) {
  const auto found = value(key);
  const auto* value = found ? std::get_if<std::string>(&*found) : nullptr;
  return value == nullptr ? std::nullopt : std::optional(*value);
}

std::vector<std::string> SettingsFile::strings(std::string_view key) {
  const auto found = value(key);
  const auto* value = found ? std::get_if<std::vector<std::string>>(&*found) : nullptr;
  return value == nullptr ? std::vector<std::string>() : *value;
}

std::optional<SettingsFile::Value> SettingsFile::value(std::string_view key) {
  if (isReadOnUse_) prepare();
  const std::lock_guard lock(mutex_);
  const auto found = values_.find(key);
  return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void SettingsFile::setBoolean(std::string_view key, bool value) {
  set(key, value);
}

void SettingsFile::setString(std::string_view key, std::string value) {
  set(key, std::move(value));
}

void SettingsFile::set(std::string_view key, Value value) {
  if (isReadOnUse_) prepare();
  {
    const std::lock_guard lock(mutex_);
    values_.insert_or_assign(std::string(key), value);
    unsaved_.insert_or_assign(std::string(key), std::move(value));
  }
  queue_.async([this] { save(); });
}

std::optional<std::string> SettingsFile::problem() {
  if (isReadOnUse_) prepare();
  const std::lock_guard lock(mutex_);
  return problem_;
}

void SettingsFile::prepare() {
  if (isLoaded_) return;
  load();
  isLoaded_ = true;
}

void SettingsFile::reload() {
  flush();
  if (!hasUnsaved()) load();
}

void SettingsFile::flush() {
  queue_.drain();
}

bool SettingsFile::hasUnsaved() {
  const std::lock_guard lock(mutex_);
  return !unsaved_.empty();
}

std::uint64_t SettingsFile::saves() {
  const std::lock_guard lock(mutex_);
  return saves_;
}

void SettingsFile::load() {
  if (isUnusable_) return;
  const auto savesBefore = saves();
  auto read = readFile();
  if (!read) return;
  const std::lock_guard lock(mutex_);
  // What was saved meanwhile may not be in what was read.
  if (saves_ != savesBefore) return;
  values_ = std::move(*read);
  for (const auto& [key, value] : unsaved_)
    values_.insert_or_assign(key, value);
}

std::optional<SettingsFile::Values> SettingsFile::readFile() {
  if (!files_.exists(file_)) return std::nullopt;
  std::string error;
  const auto text = files_.read(file_, &error);
  try {
    if (!text) throw std::runtime_error(error);
    return parse(*text);
  } catch (const std::exception& fault) {
    isUnusable_ = true;
    {
      const std::lock_guard lock(mutex_);
      problem_ = fault.what();
    }
    report(translated("could not read settings {1}: {2}; changes last until the program ends",
                      {file_.string(), fault.what()}));
    return std::nullopt;
  }
}

void SettingsFile::save() {
  if (isUnusable_ || !hasUnsaved()) return;
  // Another copy of the program may have saved other switches since.
  auto read = readFile();
  if (isUnusable_) return;
  Values saved;
  {
    const std::lock_guard lock(mutex_);
    // A file that has gone leaves what is known.
    if (read) values_ = std::move(*read);
    saved = unsaved_;
    for (const auto& [key, value] : saved)
      values_.insert_or_assign(key, value);
    read = values_;
  }
  if (const auto failure = write(*read)) {
    report(translated("could not save settings {1}: {2}; changes last until the program ends",
                      {file_.string(), failure.reason()}));
    return;
  }
  const std::lock_guard lock(mutex_);
  ++saves_;
  // What has been changed again meanwhile is still to be saved.
  std::erase_if(unsaved_, [&saved](const auto& change) {
    const auto found = saved.find(change.first);
    return found != saved.end() && found->second == change.second;
  });
}

platform::Failure SettingsFile::write(const Values& values) {
  if (auto failure = files_.createDirectories(file_.parent_path())) return failure;
  auto object = nlohmann::json::object();
  for (const auto& [key, value] : values) {
    std::visit([&, &name = key](const auto& plain) { object[name] = plain; }, value);
  }
  return files_.writeAtomically(file_, object.dump(2) + "\n");
}

void SettingsFile::report(const std::string& problem) {
  if (isReported_.exchange(true)) return;
  log_.write("Tessarok: " + problem);
}

}  // namespace tessarok::posix

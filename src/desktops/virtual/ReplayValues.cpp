#include "desktops/virtual/ReplayValues.h"

#include <algorithm>
#include <limits>
#include <map>

#include "desktops/virtual/ReplayError.h"
#include "platform/EventFlags.h"

namespace tessarok::virtualdesktop::replayValues {

namespace {

/// Three years, in seconds. Every tick of a wait is carried out, so a longer one would go on for
/// ever; and where doubles are so far apart that a tick does not move the clock, it really would.
constexpr double kLongest = 1e8;

[[noreturn]] void refuse(std::string_view what, std::string_view demand) {
  throw ReplayError(std::string(what) + " must be " + std::string(demand));
}

}  // namespace

const std::string& text(const Json& value, std::string_view what) {
  if (!value.is_string()) refuse(what, "a text");
  return value.get_ref<const std::string&>();
}

bool boolean(const Json& value, std::string_view what) {
  if (!value.is_boolean()) refuse(what, "true or false");
  return value.get<bool>();
}

std::int64_t integer(const Json& value, std::string_view what) {
  const bool fits = value.is_number_integer() &&
                    (!value.is_number_unsigned() ||
                     value.get<std::uint64_t>() <=
                         static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()));
  if (!fits) refuse(what, "a whole number");
  return value.get<std::int64_t>();
}

double seconds(const Json& value, std::string_view what) {
  const bool fits =
      value.is_number() && value.get<double>() >= 0 && value.get<double>() <= kLongest;
  if (!fits) refuse(what, "a number of seconds, 0 to 100000000");
  return value.get<double>();
}

std::vector<std::string> texts(const Json& value, std::string_view what) {
  if (!value.is_array()) refuse(what, "a list of texts");
  std::vector<std::string> all;
  for (const auto& element : value)
    all.push_back(text(element, what));
  return all;
}

std::uint32_t keyboardType(const Json& value) {
  const auto number = integer(value, "the keyboard type");
  if (number < 0 || number > std::numeric_limits<std::uint32_t>::max()) {
    refuse("the keyboard type", "between 0 and 4294967295");
  }
  return static_cast<std::uint32_t>(number);
}

platform::PhysicalLayoutType layoutType(const Json& value) {
  using Type = platform::PhysicalLayoutType;
  static const std::map<std::string, Type, std::less<>> types = {
      {"ANSI", Type::ansi}, {"ISO", Type::iso}, {"JIS", Type::jis}};
  const auto found = types.find(text(value, "\"layoutType\""));
  if (found == types.end()) refuse("\"layoutType\"", "\"ANSI\", \"ISO\" or \"JIS\"");
  return found->second;
}

std::uint64_t modifiers(const Json& value) {
  namespace flags = platform::eventFlags;
  static const std::map<std::string, std::uint64_t, std::less<>> masks = {
      {"shift", flags::shift},     {"control", flags::control},   {"option", flags::option},
      {"command", flags::command}, {"capslock", flags::capsLock}, {"fn", flags::function}};
  std::uint64_t held = 0;
  for (const auto& name : texts(value, "\"mods\"")) {
    const auto found = masks.find(name);
    if (found == masks.end()) throw ReplayError("unknown modifier \"" + name + "\"");
    held |= found->second;
  }
  return held;
}

const std::string& fileName(const std::string& name) {
  const bool isPlain = !name.empty() && name != "." && name != ".." &&
                       name.find_first_of(std::string_view("/\0", 2)) == std::string::npos;
  if (!isPlain) throw ReplayError("\"" + name + "\" is no name of a file in the per-user folder");
  return name;
}

void requireObject(const Json& value, std::string_view what,
                   std::initializer_list<std::string_view> fields) {
  if (!value.is_object()) refuse(what, "an object");
  for (const auto& [name, field] : value.items()) {
    if (std::find(fields.begin(), fields.end(), name) == fields.end()) {
      throw ReplayError("unknown field \"" + name + "\" in " + std::string(what));
    }
  }
}

}  // namespace tessarok::virtualdesktop::replayValues

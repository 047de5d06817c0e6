#pragma once

#include <cstdint>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "platform/PhysicalLayoutType.h"

/// Reads the values of replay lines, strictly: whatever is not exactly what is asked for throws
/// `ReplayError`.
namespace tessarok::virtualdesktop::replayValues {

using Json = nlohmann::json;

/// `what` names the value in the message.
[[nodiscard]] const std::string& text(const Json& value, std::string_view what);
[[nodiscard]] bool boolean(const Json& value, std::string_view what);
[[nodiscard]] std::int64_t integer(const Json& value, std::string_view what);
[[nodiscard]] double seconds(const Json& value, std::string_view what);
[[nodiscard]] std::vector<std::string> texts(const Json& value, std::string_view what);
[[nodiscard]] std::uint32_t keyboardType(const Json& value);
[[nodiscard]] platform::PhysicalLayoutType layoutType(const Json& value);
/// Masks of `platform::eventFlags`.
[[nodiscard]] std::uint64_t modifiers(const Json& value);
/// The name of a file in the per-user folder.
[[nodiscard]] const std::string& fileName(const std::string& name);
/// Demands an object that holds no other fields than these.
void requireObject(const Json& value, std::string_view what,
                   std::initializer_list<std::string_view> fields);

}  // namespace tessarok::virtualdesktop::replayValues

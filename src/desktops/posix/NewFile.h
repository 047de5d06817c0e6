#pragma once

#include <filesystem>
#include <string_view>

#include "platform/Failure.h"

namespace tessarok::posix {

/// Writes a file that is not there yet: whole, or not at all. Whatever has its name already, be it
/// a link to nowhere, stays as it is.
platform::Failure writeNewFile(const std::filesystem::path& file, std::string_view text);

}  // namespace tessarok::posix

#pragma once

#include <memory>

#include "desktops/posix/FileDescriptor.h"
#include "platform/MappedFile.h"

namespace tessarok::posix {

/// Maps an open file as a whole, so that one that is cut short or written to meanwhile ends
/// nobody's program; nothing when it cannot be mapped. Any thread.
[[nodiscard]] std::unique_ptr<platform::MappedFile> mapWhole(FileDescriptor descriptor);

}  // namespace tessarok::posix

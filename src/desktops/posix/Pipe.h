#pragma once

#include <optional>

#include "desktops/posix/FileDescriptor.h"

namespace tessarok::posix {

/// Both ends of a pipe. A program that this process becomes or starts does not have them.
struct Pipe {
  FileDescriptor reader;
  FileDescriptor writer;
};

/// Whether reading an empty pipe, and writing to a full one, waits or fails.
enum class PipeMode { waiting, nonBlocking };

/// Absent when none can be had; the reason is in errno.
[[nodiscard]] std::optional<Pipe> openPipe(PipeMode mode);

}  // namespace tessarok::posix

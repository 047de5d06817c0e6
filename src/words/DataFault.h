#pragma once

#include <cstddef>
#include <string>

namespace tessarok {

/// What is wrong with a line that no editor shows to be wrong.
inline constexpr const char* kCrLfReason = "the line ends with CR LF; only LF is allowed";

/// What makes a data file unusable.
struct DataFault {
  /// Counted from 1; 0 when it is the file as a whole.
  std::size_t line = 0;
  std::string reason;
};

}  // namespace tessarok

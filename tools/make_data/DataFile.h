#pragma once

#include <cstddef>
#include <string>

namespace tessarok::makedata {

/// One finished file of the data directory.
struct DataFile {
  std::string name;
  std::string content;
  /// Number of words, or of letter groups.
  std::size_t words = 0;
};

}  // namespace tessarok::makedata

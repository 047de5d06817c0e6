#pragma once

#include <string_view>

#include "platform/TextContext.h"

namespace tessarok::terminal {

/// How a command line ends, as the common shells read it.
struct CommandLineEnd {
  /// What its last word is part of: a name where a command begins, also behind "|", "&&" and the
  /// like and behind programs that start others, text within quotes and comments, else an argument.
  platform::TextContext::Part part;
  /// The quotation mark that is open; 0 for none.
  char32_t quote;
};

/// `isWhole` is false when the beginning of the line is not known. Pure function.
[[nodiscard]] CommandLineEnd endOfCommandLine(std::u32string_view line, bool isWhole);

}  // namespace tessarok::terminal

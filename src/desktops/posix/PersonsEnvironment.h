#pragma once

#include <optional>
#include <string>

namespace tessarok::posix {

/// An environment variable that the person who runs the program has set; absent when it is not
/// set. Where the program has more rights than that person (set-uid, set-gid or file
/// capabilities), nothing is: the variables would let the person choose what is done with these
/// rights. Main thread.
[[nodiscard]] std::optional<std::string> personsVariable(const char* name);

}  // namespace tessarok::posix

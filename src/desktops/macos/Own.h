#pragma once

#include <cstdlib>

namespace tessarok::macos {

/// What this desktop has made, from the interface that it was handed out as: the one way down. An
/// object of another desktop is a mistake in the program and stops it, before the system is given
/// something else than it expects.
template <typename Own, typename Interface>
[[nodiscard]] Own& own(Interface& object) {
  auto* const made = dynamic_cast<Own*>(&object);
  if (made == nullptr) std::abort();
  return *made;
}

}  // namespace tessarok::macos

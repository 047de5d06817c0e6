#pragma once

#include <stdexcept>

namespace tessarok::virtualdesktop {

/// A line of a replay that cannot be understood or carried out; the message says why, without
/// the line's number. Ends the run.
class ReplayError final : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace tessarok::virtualdesktop

#pragma once

#include <cstddef>

namespace tessarok::posix {

/// Why this is needed: a file that is mapped can be cut short at any time, by whoever writes it in
/// place, and reading what is no longer there ends the process with SIGBUS. Reading the
/// dictionaries into memory of their own would cost every copy of the program 34 MB for something
/// that packages never do.
///
/// Behavior: while the object lives, a page of its region that cannot be read is replaced by one
/// of line feeds, and the reader goes on. A search for a line ends at once there.
///
/// Operational notes: the handler of SIGBUS is installed with the first region and given back with
/// the last. Every other SIGBUS goes to the handler that was there before. A handler installed
/// later that passes nothing on takes the protection away. Any thread.
class MappingGuard {
 public:
  /// The region starts at a page. There is room for a few regions; one beyond that is not guarded.
  MappingGuard(const void* address, std::size_t size);
  MappingGuard(const MappingGuard&) = delete;
  MappingGuard& operator=(const MappingGuard&) = delete;
  ~MappingGuard();

  /// Whether a page of the region had to be replaced. Costs nothing.
  [[nodiscard]] bool hasLostPart() const;

 private:
  static constexpr std::size_t kUnguarded = static_cast<std::size_t>(-1);
  std::size_t slot_ = kUnguarded;
};

}  // namespace tessarok::posix

#pragma once

#include <cstddef>
#include <string_view>

namespace tessarok::platform {

/// A file's bytes, mapped into memory rather than copied, for as long as the object lives. Whoever
/// replaces the file by a new one under its name changes nothing here. Written to in place it
/// changes under the reader, who goes on without harm, and can ask.
class MappedFile {
 public:
  MappedFile() = default;
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;
  virtual ~MappedFile() = default;
  [[nodiscard]] virtual std::string_view bytes() const = 0;
  /// Whether something was read that the file no longer has; line feeds stand in its place. Costs
  /// nothing. Any thread.
  [[nodiscard]] virtual bool hasLostPart() const { return false; }
  /// Whether the file is, as far as its length and date tell, still as it was mapped. Asks the
  /// system. Any thread.
  [[nodiscard]] virtual bool isUnchanged() const { return true; }
  /// Whether the bytes from one place up to another can be read now. What memory does not hold any
  /// more is waited for shortly, then fetched while nobody waits: until it is there the answer is
  /// no. Any thread.
  [[nodiscard]] virtual bool isAtHand(std::size_t, std::size_t) { return true; }
  /// What was at hand need not be any more. Any thread.
  virtual void askAnew() {}
};

}  // namespace tessarok::platform

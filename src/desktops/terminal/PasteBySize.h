#pragma once

#include <cstddef>
#include <optional>

namespace tessarok::terminal {

/// Tells by its size what was pasted and not typed, where nothing else does: no person types
/// hundreds of bytes at once, nor dozens where no key had to wait. Times are seconds of uptime.
/// Main thread.
class PasteBySize final {
 public:
  /// Whether so many bytes may be the beginning of a paste, and the rest is worth a moment's wait.
  [[nodiscard]] bool mayBegin(std::size_t count, double uptime) const;

  /// `count` bytes came together. `wantsBrackets`: the program has asked for brackets around what
  /// is pasted, and smaller texts would have them. Answers whether they are pasted.
  [[nodiscard]] bool read(std::size_t count, bool wantsBrackets, double uptime);
  /// Keys have to wait, and may come together afterwards.
  void noteWait(double uptime) { waitedAt_ = uptime; }
  /// The program has got all that was read: the next part of a paste comes soon after.
  void noteServed(double uptime);

 private:
  [[nodiscard]] bool continues(double uptime) const { return isPaste_ && uptime <= until_; }
  [[nodiscard]] bool begins(std::size_t count, bool wantsBrackets, double uptime) const;

  bool isPaste_ = false;
  /// The part in hand is large enough to have another one behind it.
  bool mayContinue_ = false;
  /// Parts that come until then belong to the same paste.
  double until_ = 0;
  /// Absent for never.
  std::optional<double> waitedAt_;
};

}  // namespace tessarok::terminal

#pragma once

#include <cstddef>
#include <optional>

namespace tessarok::terminal {

/// Tells by its size what was pasted and not typed, where nothing else does: no person types
/// hundreds of bytes at once, nor dozens where no key had to wait. Times are seconds of uptime.
/// Main thread.
class PasteBySize final {
 public:
  /// Bytes that hardly come together when typed: more of a paste may follow at once.
  [[nodiscard]] static bool mayHaveMore(std::size_t count);
  /// A part that has this many bytes is pasted, whatever else is known.
  [[nodiscard]] static bool isLarge(std::size_t count);

  /// `count` bytes came together. `wantsBrackets`: the program has asked for brackets around what
  /// is pasted, and smaller texts would have them. Answers whether they are pasted.
  [[nodiscard]] bool read(std::size_t count, bool wantsBrackets, double uptime);
  /// Keys have to wait, and may come together afterwards.
  void noteWait(double uptime) { waitedAt_ = uptime; }
  /// The program got all that was read: from now on it takes the person's time until more comes.
  void noteServed(double uptime);

 private:
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

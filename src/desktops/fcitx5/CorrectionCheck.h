#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tessarok::fcitx5 {

/// Finds out from a program's reports whether a correction took more, or less, of its text away
/// than it should have. Main thread.
///
/// What must stay is what stood before the erased words. A program that misunderstands what it was
/// asked to delete shows the new words behind a text of another length.
class CorrectionCheck final {
 public:
  /// A correction is about to be sent; `stays` is how many scalars are to remain before it.
  void begin(std::ptrdiff_t stays);
  /// A text was sent: the new words, or what was typed behind them.
  void typed(std::string_view text);
  /// Nothing can be said any more: something else was done, or all is well.
  void forget();

  /// Whether a report that fits nothing that was sent shows damage: it ends with what was typed
  /// since `begin`, or with its beginning, but something else is before it.
  [[nodiscard]] bool showsDamage(std::string_view before) const;

 private:
  /// Longer than what is typed until a report comes.
  static constexpr std::size_t kMostTyped = 256;

  /// Absent when no correction is being looked at.
  std::optional<std::ptrdiff_t> stays_;
  /// The new words, as sent first, and all that was sent since then.
  std::string words_;
  std::string typed_;
};

}  // namespace tessarok::fcitx5

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tessarok::inputmethod {

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
  /// A report fits what was sent.
  void isAsExpected() { witnesses_ = 0; }

  /// A report came that fits nothing that was sent. It speaks of damage when it ends with what was
  /// typed since `begin`, or with its beginning, but something of another length is before that.
  void reported(std::string_view before);
  /// Whether several reports in a row, while one typed on, were of one damage: programs also tell a
  /// text and a caret that are not of the same moment.
  [[nodiscard]] bool isDamaged() const { return witnesses_ >= kWitnesses; }

 private:
  static constexpr int kWitnesses = 3;
  /// Longer than what is typed until a report comes.
  static constexpr std::size_t kMostTyped = 256;

  /// Absent when no correction is being looked at.
  std::optional<std::ptrdiff_t> stays_;
  /// The new words, and all that was sent since then; so many bytes of it are the words.
  std::string typed_;
  std::size_t words_ = 0;
  /// So many scalars were before it in the last report that spoke of damage, and so many reports in
  /// a row told that.
  std::ptrdiff_t found_ = 0;
  int witnesses_ = 0;
  /// The size of that report, bytes.
  std::size_t witnessed_ = 0;
};

}  // namespace tessarok::inputmethod

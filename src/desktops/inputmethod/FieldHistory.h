#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

namespace tessarok::inputmethod {

/// What a text field holds before its caret after each thing that was sent to it, as far as that
/// can be told, and how far its program's reports show it to have come. Main thread.
///
/// A report says what the field held when it was made, and may have been made before the last
/// things arrived. A letter and a Backspace lead back to the same text, so a report is taken for
/// the earliest state that it fits: it never shows more than is sure.
///
/// A report need not be of the whole text. GTK 4 tells the last three words before the caret, so
/// that its reports lose words at their beginning while one types; a field that was seen to do so
/// is taken at what it tells (`isWindowed`).
class FieldHistory final {
 public:
  /// What was sent: a text; something that erases; a key that may do anything, such as Return.
  enum class Effect { text, erasure, unknown };
  /// Of a report: it fits the history; it does not, but something is on its way; it does not, and
  /// nothing is.
  enum class Verdict { fits, unclear, elsewhere };
  /// A thing that a report has shown to have arrived.
  struct Arrival {
    Effect effect;
    double sentAt;
  };

  /// Nothing is known of the field any more, and nothing is on its way.
  void forget();
  /// The program reports nothing any more. What was typed is still known.
  void reportsEnded();

  // What is sent, and the time.
  void typed(std::string_view text, double now);
  void erased(std::size_t characters, double now);
  void unknownKey(double now);

  /// What is before the caret. The history goes on from there even when it does not fit.
  [[nodiscard]] Verdict reported(std::string_view before);
  /// Starts anew with what a report shows.
  void restart(std::string_view before);

  /// The last thing that the last report has shown to have arrived; absent when none was new.
  [[nodiscard]] const std::optional<Arrival>& arrival() const { return arrival_; }
  /// The last thing that is not known to have arrived; absent when all are.
  [[nodiscard]] std::optional<Effect> awaited() const;
  /// Whether reports were seen to tell only the last words.
  [[nodiscard]] bool isWindowed() const { return isWindowed_; }
  /// Whether the text before the caret is known from a report that shows everything sent.
  [[nodiscard]] bool isShown() const;
  /// The last Characters before the caret; absent when so many are not known.
  [[nodiscard]] std::optional<std::string_view> last(std::size_t characters) const;
  /// How many scalars would be before the caret without the last Characters; absent when no report
  /// shows that, or when reports are of a part of the text.
  [[nodiscard]] std::optional<std::ptrdiff_t> lengthWithout(std::size_t characters) const;

 private:
  struct State {
    /// The end of the text, as far as it is known.
    std::string tail;
    /// Scalars of the whole text. Absent behind a key that may have done anything.
    std::optional<std::ptrdiff_t> length;
    Effect effect = Effect::unknown;
    double sentAt = 0;
  };

  void add(State state);
  [[nodiscard]] bool fits(std::size_t index, std::string_view before) const;
  [[nodiscard]] bool fitsAsWindow(std::size_t index, std::string_view before) const;
  void arrive(std::size_t index, std::string_view before);
  [[nodiscard]] Verdict reportedBehindUnknown(std::size_t unknown, std::string_view before);
  void resolve(std::size_t unknown, std::size_t index, std::string_view before);

  /// The state that the field is known to have reached, then those that it will come to.
  std::deque<State> states_{State{}};
  std::optional<Arrival> arrival_;
  bool hasReport_ = false;
  bool isWindowed_ = false;
};

}  // namespace tessarok::inputmethod

#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include "desktops/inputmethod/CorrectionCheck.h"
#include "desktops/inputmethod/FieldHistory.h"

namespace tessarok::inputmethod {

/// The text field that is being typed into: what is before its caret, and whether its program has
/// dealt with everything that was sent to it. Main thread.
///
/// A program takes texts at once and keys when their turn comes in its own queue, so a text that
/// is sent behind a key overtakes it. The only sign that a key has been dealt with is the text
/// around the caret, which many programs report; for others there is but waiting.
class ClientField final {
 public:
  /// The two ways to a program. What is sent one way keeps its order.
  enum class Way { text, key };
  /// How something is sent, by whom (`isOwn`: by the corrector, not because the person pressed a
  /// key) and when.
  struct Sending {
    Way way = Way::key;
    bool isOwn = false;
    double now = 0;
  };

  /// Seconds after which a program that reports nothing is taken to have dealt with a key, unless
  /// another time is said, and one that may yet begin to report.
  static constexpr double kSettle = 0.016;
  static constexpr double kFirstSettle = 0.04;
  /// The same for programs that report: what changes the text, and what may change nothing.
  static constexpr double kPatience = 1;
  static constexpr double kUnknownPatience = 0.3;
  /// Some kinds of keys a program may never report. For those it gets so many times as long as its
  /// slowest report took lately, within these bounds: on a busy machine a program that was quick
  /// all the time may suddenly not get to run for 0.1 seconds.
  static constexpr double kSlower = 20;
  static constexpr double kLeastPatience = 0.3;
  static constexpr double kMostPatience = 1;

  /// Another field, whose program takes so long for a key at most as long as it reports nothing.
  void reset(double settle = kSettle);
  /// The program of the same field takes so long from now on.
  void setSettle(double settle) { settle_ = settle; }
  /// Another place in a field whose reports are as good as they were.
  void forgetText();

  /// So many Characters before the caret are about to be erased, for words that take their place.
  void correctionBegins(std::size_t characters);
  /// A text that comes to stand before the caret.
  void typed(std::string_view text, const Sending& sending);
  /// Erases so many Characters before the caret at once.
  void erased(std::size_t characters, const Sending& sending);
  /// A key whose effect is not known, such as Return.
  void keyOfUnknownEffect(const Sending& sending);

  /// The program reports its text: what is before the caret. `isSelected`: some of it is selected.
  /// Returns false when the caret has gone elsewhere without a key.
  [[nodiscard]] bool reported(std::string_view before, bool isSelected, double now);
  /// Whether a report has shown since the last `reset` that a correction did not come out: text
  /// that is none of its is missing, or stands there twice.
  [[nodiscard]] bool isDamaged() const { return isDamaged_; }
  /// The program reports nothing any more.
  void reportedNothing();

  /// Whether the report shows that the text before the caret is what was typed.
  [[nodiscard]] bool showsTyped() const { return history_.isShown() && !isSelected_; }
  /// The last Characters before the caret; absent when so many are not known.
  [[nodiscard]] std::optional<std::string_view> last(std::size_t characters) const {
    return history_.last(characters);
  }

  /// Whether the program tells what is in the field.
  [[nodiscard]] bool hasReports() const { return reports_ && !isReportEmpty_; }

  /// What was sent last has not come to the program yet, which gets its time from now on. Whether
  /// that matters.
  [[nodiscard]] bool isStillOnItsWay(double now);
  /// The time at which to ask again; absent when everything has been dealt with.
  [[nodiscard]] std::optional<double> unsettledUntil(double now);
  /// The way of what was sent last, and whether the corrector sent it; only while unsettled.
  [[nodiscard]] Way lastWay() const { return last_.way; }
  [[nodiscard]] bool isLastOwn() const { return last_.isOwn; }

 private:
  using Effect = FieldHistory::Effect;

  void sent(const Sending& sending);
  void noteArrival(double now);
  [[nodiscard]] double patience(Effect effect) const;
  [[nodiscard]] int& unanswered(Effect effect);
  [[nodiscard]] int unanswered(Effect effect) const;

  double settle_ = kSettle;
  FieldHistory history_;
  CorrectionCheck check_;
  bool isDamaged_ = false;
  Sending last_;
  /// What was sent last has been waited for long enough.
  bool isGivenUp_ = true;

  bool reports_ = false;
  bool isReportEmpty_ = false;
  bool isSelected_ = false;
  /// Reports have shown what was sent.
  bool reportsFollow_ = false;
  /// So long did they take lately, seconds.
  double slowest_ = 0;
  /// Of each kind of effect, how many in a row were not seen in a report in time.
  std::array<int, 3> unanswered_{};
};

}  // namespace tessarok::inputmethod

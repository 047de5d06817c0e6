#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tessarok::fcitx5 {

/// What is known of the text field that is being typed into: the end of the text before its caret,
/// as far as keys tell, and whether its program has dealt with everything that was sent to it.
/// Main thread.
///
/// A program takes texts at once and keys when their turn comes in its own queue, so a text that
/// is sent behind a key overtakes it. The only sign that a key has been dealt with is the text
/// around the caret, which many programs report; for others there is but waiting.
class ClientField final {
 public:
  /// The two ways to a program. What is sent one way keeps its order.
  enum class Way { text, key };

  /// Seconds after which a program that reports nothing is taken to have dealt with a key.
  static constexpr double kSettle = 0.016;
  /// The same for a program that may yet begin to report, and for one whose reports are known to
  /// follow the keys: it is only slow.
  static constexpr double kFirstSettle = 0.04;
  static constexpr double kPatience = 1;
  /// And for a key that may well change nothing; and where such keys were not answered so far.
  static constexpr double kUnknownEffectPatience = 0.3;
  static constexpr double kUnansweredPatience = 0.3;

  /// Another field, or another place in it: nothing is known.
  void reset();
  /// As `reset`, in a field whose reports are as good as they were.
  void forgetText();

  /// A text came to stand before the caret.
  void typed(std::string_view text);
  /// Characters before the caret were erased.
  void erased(std::size_t characters);
  /// A key was sent whose effect is not known, such as Return.
  void keyOfUnknownEffect();
  /// Something was sent. `own`: by the corrector, not because the person pressed a key.
  void sent(Way way, bool own, double now);

  /// The program reports its text: what is before the caret. `isSelected`: some of it is selected.
  /// Returns false when the caret has gone elsewhere without a key.
  bool reported(std::string_view before, bool isSelected);
  /// The program reports nothing any more.
  void reportedNothing();

  /// Whether the report shows that the text before the caret is what was typed.
  [[nodiscard]] bool showsTyped() const { return matches(); }
  /// The last Characters before the caret; absent when so many are not known.
  [[nodiscard]] std::optional<std::string_view> last(std::size_t characters) const;

  /// The time at which to ask again; absent when everything has been dealt with.
  [[nodiscard]] std::optional<double> unsettledUntil(double now);
  /// The way of what was sent last, and whether the corrector sent it; only while unsettled.
  [[nodiscard]] Way lastWay() const { return way_; }
  [[nodiscard]] bool isLastOwn() const { return isOwn_; }

 private:
  /// What a field held when a key came.
  struct BeforeKey {
    /// As far as it was known, and the length that the report is to have with it.
    std::string text;
    std::optional<std::ptrdiff_t> length;
    /// The last report of that time, and whether it shows `text`.
    std::string shown;
    bool isShown = false;
  };

  [[nodiscard]] bool matches() const;
  [[nodiscard]] std::optional<std::ptrdiff_t> expectedLength() const;
  void noteReportBeforeKey();
  [[nodiscard]] bool showsEffectOfKey() const;
  [[nodiscard]] double patience() const;
  void startCounting();

  /// The end of the text before the caret; empty when nothing is known.
  std::string tail_;
  /// The report: the text before the caret, and how many scalars it has.
  std::optional<std::string> report_;
  std::size_t reportLength_ = 0;
  bool isReportSelected_ = false;
  /// The length of the report at which the tail had a certain length: from there on both grow and
  /// shrink together.
  std::optional<std::ptrdiff_t> offset_;
  /// A key was sent that will change the report in a way that is not known.
  std::optional<BeforeKey> before_;
  /// The report has shown the tail since the tail changed.
  bool isConfirmed_ = false;

  /// The report is of this moment: nothing was sent since that it does not show.
  bool isReportCurrent_ = true;
  bool isUnsettled_ = false;
  Way way_ = Way::key;
  bool isOwn_ = false;
  double sentAt_ = 0;

  bool reportsFollow_ = false;
  int failures_ = 0;
  /// Reports in a row that showed what was typed.
  int confirmations_ = 0;
  /// Keys of unknown effect that were not answered, one after the other.
  int unanswered_ = 0;
};

}  // namespace tessarok::fcitx5

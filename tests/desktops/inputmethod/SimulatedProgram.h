#pragma once

#include <functional>
#include <random>
#include <string>

#include "desktops/inputmethod/Client.h"
#include "desktops/virtual/TextField.h"
#include "platform/Clock.h"
#include "platform/RunLoop.h"

namespace tessarok::testing {

/// A program with a text field, as an input method sees it: it takes texts at once and keys when
/// their turn comes in its own queue, and tells of its text later, or not at all. All delays are of
/// the clock that it is given, and random.
class SimulatedProgram final : public inputmethod::Client {
 public:
  /// What it tells of its text: nothing; an empty text, whatever is there; all before the caret;
  /// the last three words; the line of the caret.
  enum class Reports { nothing, emptyText, all, lastWords, line };
  /// Seconds that something takes.
  struct Delay {
    double least = 0;
    double most = 0;
  };
  /// A kind of program, as it was measured.
  struct Kind {
    std::string name;
    Habits habits;
    Reports reports = Reports::nothing;
    /// Says that it deletes what it is asked to.
    bool canDelete = false;
    /// Does not do so.
    bool ignoresDeletion = false;
    /// Takes the bytes in what it is asked to delete for characters.
    bool deletesBytes = false;
    /// Resets its input method at Backspace, Return and the like.
    bool resets = false;
    /// A text that has not arrived when the next one is sent never does, as in GNOME's shell.
    bool losesTexts = false;
    /// Takes no text in a moment a little behind one of the corrector's, when it has drawn that and
    /// the compositor does not know it yet, as the terminal foot. What it loses behind the
    /// framework's own texts, it loses without the corrector too.
    bool isBlindWhileDrawing = false;
    Delay key;
    Delay text;
    Delay report;
    /// Of so many reports one is lost; 0: none is.
    int oneLostOf = 0;
    /// Of so many reports one tells the text with the caret of the report before; 0: none does.
    int oneWrongOf = 0;
  };
  /// What is around it.
  struct Surroundings {
    platform::RunLoop& loop;
    platform::Clock& clock;
    std::mt19937& random;
    /// The text that a key types by the layout that the program's keyboard has; empty for none.
    std::function<std::string(const inputmethod::Key&)> textOf;
    /// The modifiers that are down at the keyboard.
    std::function<std::uint32_t()> modifiers;
    /// The program tells its text, or that the caret may be elsewhere.
    std::function<void()> onReport;
    std::function<void()> onReset;
  };

  SimulatedProgram(Kind kind, Surroundings surroundings)
      : kind_(std::move(kind)), around_(std::move(surroundings)) {
    if (kind_.reports != Reports::nothing) report_ = Report{};
  }

  /// A key that the input method has let through.
  void key(const inputmethod::Key& key);
  [[nodiscard]] std::string text() const { return field_.text(); }
  /// Nothing is on its way to it or from it.
  [[nodiscard]] bool isIdle() const { return onTheirWay_ == 0; }

  Habits habits() const override { return kind_.habits; }
  std::string program() const override { return kind_.name; }
  bool hasFocus() const override { return true; }
  bool isSecret() const override { return false; }
  bool isComposing() const override { return false; }
  bool canDelete() const override { return kind_.canDelete; }
  std::optional<Report> report() const override { return report_; }
  /// A text that the framework sends without the corrector's doing.
  void commitOfFramework(const std::string& text);
  void commit(const std::string& text) override;
  void deleteBefore(std::size_t scalars) override;
  void forward(const inputmethod::Key& key) override;
  Replayed replay(const inputmethod::Key&, const inputmethod::Key&, int,
                  const std::function<inputmethod::KeyAnswer()>& show) override {
    return {.isTaken = show() == inputmethod::KeyAnswer::take};
  }

 private:
  /// One of the two ways to the program: what is sent on it keeps its order.
  struct Channel {
    double lastDue = 0;
  };

  void send(Channel& channel, const Delay& delay, std::function<void()> work);
  [[nodiscard]] bool isBlindAt(double time) const;
  void arrive(const std::string& text);
  void handleKey(const inputmethod::Key& key);
  void handleDeletion(std::size_t scalars);
  void tell();
  [[nodiscard]] std::string toldText() const;
  [[nodiscard]] double lasting(const Delay& delay);
  [[nodiscard]] bool oneOf(int many);

  Kind kind_;
  Surroundings around_;
  virtualdesktop::TextField field_;
  Channel keys_;
  Channel texts_;
  Channel reports_;
  int onTheirWay_ = 0;
  /// When the corrector's last text was sent, and when what has come is drawn.
  double lastSent_ = 0;
  double drawing_ = -1;
  /// Of texts that were sent.
  int lastText_ = 0;
  std::optional<Report> report_;
  std::size_t toldBefore_ = 0;
};

}  // namespace tessarok::testing

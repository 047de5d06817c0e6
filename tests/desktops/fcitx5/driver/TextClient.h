#pragma once

#include <cstdint>
#include <fcitx-utils/event.h>
#include <fcitx/inputcontext.h>
#include <fcitx/instance.h>
#include <memory>
#include <string>
#include <vector>

#include "desktops/virtual/TextField.h"

namespace tessarok::testing {

/// A program with a text field, as Fcitx sees it. It takes texts at once and keys when their turn
/// comes in its queue, as toolkits do.
class TextClient final : public fcitx::InputContext {
 public:
  /// What the program tells of its text.
  enum class Reports {
    nothing,
    /// An empty text, whatever is there.
    emptyText,
    all,
  };
  struct Habits {
    Reports reports = Reports::nothing;
    /// Milliseconds for which keys lie in the queue.
    unsigned keyDelay = 0;
    /// Takes the numbers of bytes in what it is asked to delete for numbers of characters, as GTK
    /// 4.8 does on Wayland.
    bool deletesBytes = false;
    /// A key that was handed back counts with the Shift of the moment in which its turn comes, as
    /// KWin has it.
    bool readsShiftLate = false;
    /// Fcitx's part that the program speaks with.
    std::string frontend = "tessarok-driver";
    /// Resets its input method at Backspace, Return and the like.
    bool resets = false;
    /// And whenever its text has changed.
    bool resetsAlways = false;
    /// Sends on what it hears from Fcitx during a key event only behind that event.
    bool ordersEvents = false;
  };
  /// A key of a US keyboard.
  struct Stroke {
    fcitx::KeySym symbol = FcitxKey_None;
    fcitx::KeyStates states;
    int xKey = 0;
  };

  TextClient(fcitx::Instance& instance, const Habits& habits);
  ~TextClient() override;

  const char* frontend() const override { return habits_.frontend.c_str(); }

  void press(const Stroke& stroke);
  void release(const Stroke& stroke);
  /// As a click beyond the text.
  void click();
  [[nodiscard]] std::string text() const { return field_.text(); }
  [[nodiscard]] std::size_t caret() const { return field_.caret(); }
  /// Nothing lies in the queue.
  [[nodiscard]] bool isIdle() const { return queue_.empty(); }

 protected:
  void commitStringImpl(const std::string& text) override;
  void deleteSurroundingTextImpl(int offset, unsigned int size) override;
  void forwardKeyImpl(const fcitx::ForwardKeyEvent& key) override;
  void updatePreeditImpl() override {}

 private:
  void handle(const Stroke& stroke);
  [[nodiscard]] bool keyEventOf(const Stroke& stroke, bool isRelease);
  void enqueue(const Stroke& stroke);
  /// Of the last characters before the caret.
  [[nodiscard]] std::size_t bytesBeforeCaret(std::size_t characters) const;
  void serveOverdue();
  void serveQueue();
  void report();

  fcitx::Instance& instance_;
  Habits habits_;
  virtualdesktop::TextField field_;
  std::vector<Stroke> queue_;
  /// When the queue is to be served, microseconds.
  std::uint64_t due_ = 0;
  std::unique_ptr<fcitx::EventSourceTime> timer_;
  /// The modifiers with which the last key was pressed.
  fcitx::KeyStates states_;
  int time_ = 0;
};

}  // namespace tessarok::testing

#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "desktops/terminal/InputItem.h"

namespace tessarok::terminal {

/// Cuts the bytes of a terminal into items. Bytes may come in pieces of any size; what is
/// incomplete waits for the rest or for `endWaiting`, so that the Escape key, which is the
/// beginning of many sequences, is told from them by time alone. No byte is lost or changed.
class InputDecoder {
 public:
  /// Bytes still in hand stay in front. Views into earlier items end here.
  void append(std::string_view bytes);
  /// The next item; absent when there is none, or when it is incomplete.
  [[nodiscard]] std::optional<InputItem> next();
  /// After `next` answered with nothing: whether `endWaiting` has to follow when no byte comes.
  [[nodiscard]] bool isWaiting() const { return waiting_ || mode_ == Mode::answer; }
  /// Nothing more will come: `next` takes the bytes in hand as they are.
  void endWaiting();
  /// Bytes in hand.
  [[nodiscard]] std::size_t size() const { return buffer_.size() - position_; }
  /// Until it is set back, everything is taken for pasted, brackets or none.
  void setBurst(bool burst) { burst_ = burst; }

 private:
  enum class Mode {
    keys,
    /// Between the brackets of a paste.
    paste,
    /// In an answer of the terminal that ends with ST or BEL.
    answer,
  };

  [[nodiscard]] std::string_view rest() const;
  [[nodiscard]] std::optional<InputItem> nextPasted();
  [[nodiscard]] std::optional<InputItem> nextOfAnswer();
  [[nodiscard]] std::optional<InputItem> nextKey();
  [[nodiscard]] std::optional<InputItem> nextEscape();
  [[nodiscard]] std::optional<InputItem> nextControlSequence();
  [[nodiscard]] std::optional<InputItem> nextScalar(std::size_t from, InputItem::Kind kind);
  [[nodiscard]] InputItem take(InputItem::Kind kind, std::size_t size, char32_t scalar = 0);
  [[nodiscard]] std::optional<InputItem> wait();

  std::string buffer_;
  /// Where the bytes in hand begin.
  std::size_t position_ = 0;
  Mode mode_ = Mode::keys;
  bool burst_ = false;
  bool waiting_ = false;
  bool complete_ = false;
};

}  // namespace tessarok::terminal

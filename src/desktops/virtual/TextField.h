#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "desktops/virtual/VirtualEvent.h"

namespace tessarok::virtualdesktop {

/// The application of the virtual desktop: a text and a caret.
class TextField {
 public:
  /// Acts on a key-down that reached the application.
  void keyDown(const VirtualEvent& event);
  void moveCaretToEnd();
  /// Empties the field, as for the next of many texts.
  void clear();

  [[nodiscard]] std::string text() const { return before_ + after_; }
  /// Characters before the caret.
  [[nodiscard]] std::size_t caret() const;

 private:
  void insert(std::string_view text) { before_ += text; }
  void insert(std::u16string_view units);
  void eraseBefore();
  void eraseAfter();
  void moveLeft();
  void moveRight();
  void moveToStart();

  std::string before_;
  std::string after_;
  /// A member only to keep its storage.
  std::string typed_;
};

}  // namespace tessarok::virtualdesktop

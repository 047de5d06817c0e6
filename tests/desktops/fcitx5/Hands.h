#pragma once

#include <chrono>
#include <string_view>

namespace tessarok::testing {

/// Somebody at a keyboard.
class Hands {
 public:
  Hands() = default;
  Hands(const Hands&) = delete;
  Hands& operator=(const Hands&) = delete;
  virtual ~Hands() = default;

  /// Presses the keys that give these characters on a US keyboard, each so long after the one
  /// before it. "\n", "\t" and "\b" are Return, Tab and Backspace.
  void type(std::string_view text, std::chrono::milliseconds interval = {});

 protected:
  /// A key by its X key code.
  virtual void key(unsigned xKey, bool isDown) = 0;
  /// Everything so far has been sent.
  virtual void flush() = 0;
};

}  // namespace tessarok::testing

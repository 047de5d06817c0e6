#pragma once

#include <string_view>

namespace tessarok::platform {

/// What the word being typed is part of, on a desktop that can tell. Main thread.
class TextContext {
 public:
  enum class Part {
    /// What people write to each other, and whatever cannot be told from it.
    text,
    /// The name of a program, where a shell waits for a command, or of something to be installed.
    commandName,
    /// What follows that name, outside of quotes.
    commandArgument,
    /// What follows a dash there.
    commandOption,
  };

  virtual ~TextContext() = default;
  /// The part that ends with the word in hand.
  [[nodiscard]] virtual Part part() = 0;
  /// Whether there is a program of this name, as far as that is known. Waits for no folder.
  [[nodiscard]] virtual bool isProgram(std::string_view name) = 0;
};

}  // namespace tessarok::platform

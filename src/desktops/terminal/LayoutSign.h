#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tessarok::terminal {

/// Shows in the person's terminal which of the own layouts is in force: by the colour of the cursor
/// and, where it is asked for, by the window's title. A terminal that is not known to understand
/// that is sent nothing. Main thread.
class LayoutSign final {
 public:
  enum class State { english, russian, off };
  /// Answers with a setting that is a text; absent when it was never set.
  using Settings = std::function<std::optional<std::string>(std::string_view key)>;

  explicit LayoutSign(Settings settings) : settings_(std::move(settings)) {}

  /// What the terminal has to be sent to show this; empty when it does already.
  [[nodiscard]] std::string show(State state);

 private:
  [[nodiscard]] bool isKnownTerminal();
  [[nodiscard]] bool wants(std::string_view key, bool usually) const;

  Settings settings_;
  State shown_ = State::english;
  std::optional<bool> isKnownTerminal_;
};

}  // namespace tessarok::terminal

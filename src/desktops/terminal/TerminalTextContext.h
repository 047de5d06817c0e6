#pragma once

#include <functional>
#include <optional>
#include <string_view>
#include <utility>

#include "desktops/terminal/ProgramNames.h"
#include "platform/TextContext.h"

namespace tessarok::terminal {

/// What words of a shell's command line are. Main thread.
class TerminalTextContext final : public platform::TextContext {
 public:
  /// `part` is asked what the word in hand is; without it everything is text.
  void watch(std::function<Part()> part) { part_ = std::move(part); }
  /// A command line is about to be typed; `now` is in seconds. Does not wait.
  void expectCommand(double now);

  Part part() override { return part_ ? part_() : Part::text; }
  /// As a shell would find it, in the folders of the person's search path, as they were when the
  /// last command line began.
  bool isProgram(std::string_view name) override;

 private:
  std::function<Part()> part_;
  std::optional<ProgramNames> programs_;
};

}  // namespace tessarok::terminal

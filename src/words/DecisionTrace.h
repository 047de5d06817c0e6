#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessarok {

/// The steps that led to a decision, in words a person understands. Only `tessarok explain` asks
/// for them; while typing there is none and nothing is written.
class DecisionTrace {
 public:
  /// Adds a step, given in pieces; does nothing without a trace.
  template <typename... Pieces>
  static void note(DecisionTrace* trace, const Pieces&... pieces) {
    if (trace == nullptr) return;
    std::string step;
    (step.append(std::string_view(pieces)), ...);
    trace->steps_.push_back(std::move(step));
  }
  [[nodiscard]] const std::vector<std::string>& steps() const { return steps_; }

 private:
  std::vector<std::string> steps_;
};

}  // namespace tessarok

#pragma once

#include <string>
#include <utility>
#include <vector>

namespace tessarok {

/// The steps that led to a decision, in words a person understands. Only `tessarok explain` asks
/// for them; while typing there is none and nothing is written.
class DecisionTrace {
 public:
  void add(std::string step) { steps_.push_back(std::move(step)); }
  [[nodiscard]] const std::vector<std::string>& steps() const { return steps_; }

 private:
  std::vector<std::string> steps_;
};

}  // namespace tessarok

#pragma once

#include <string>

namespace tessarok::measure {

/// What a person means to type, and on which keyboard.
struct Sentence {
  std::string text;
  bool russian = false;
};

}  // namespace tessarok::measure

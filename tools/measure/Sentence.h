#pragma once

#include <string>

#include "words/Language.h"

namespace tessarok::measure {

/// What a person means to type, and on which keyboard.
struct Sentence {
  std::string text;
  Language language = Language::english;
};

}  // namespace tessarok::measure

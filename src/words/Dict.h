#pragma once

#include "words/DictFile.h"

namespace tessarok {

/// The two dictionaries, each loaded on first use and kept for the life of the process.
class Dict {
 public:
  Dict() = delete;
  [[nodiscard]] static const DictFile& en();
  [[nodiscard]] static const DictFile& ru();
  [[nodiscard]] static const DictFile& of(bool russian) { return russian ? ru() : en(); }
};

}  // namespace tessarok

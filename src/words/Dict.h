#pragma once

#include <cstdint>

#include "words/DictFile.h"
#include "words/Language.h"

namespace tessarok {

/// The two dictionaries, each loaded on first use and kept for the life of the process.
class Dict {
 public:
  Dict() = delete;
  [[nodiscard]] static const DictFile& en();
  [[nodiscard]] static const DictFile& ru();
  [[nodiscard]] static const DictFile& of(Language language) {
    return language == Language::russian ? ru() : en();
  }
  [[nodiscard]] static bool areAvailable() { return en().isAvailable() && ru().isAvailable(); }
  /// Looks whether a file was written to in place. True when one is unavailable since just now.
  static bool noticeChanges();
  /// How many look-ups have had no answer, because a disk would have had to be waited for.
  [[nodiscard]] static std::uint64_t misses() { return en().misses() + ru().misses(); }
  /// Memory may have lost parts of the files since the last call. To be called now and then.
  static void askAnew();
};

}  // namespace tessarok

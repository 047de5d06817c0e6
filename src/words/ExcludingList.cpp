#include "words/ExcludingList.h"

#include "words/BuiltinPacks.h"
#include "words/Detector.h"
#include "words/IgnoreList.h"
#include "words/UserDict.h"

namespace tessarok {

std::optional<std::string_view> excludingListOf(std::string_view lower) {
  if (Detector::blacklist().contains(lower)) return "the program's own list of short words";
  if (IgnoreList::words().contains(lower)) return "the learned list (ignored.txt)";
  if (IgnoreList::sessionWords().contains(lower)) return "the list of what was rejected lately";
  if (UserDict::contains(lower)) return "the user dictionary (dictionary.txt)";
  if (BuiltinPacks::contains(lower)) return "a built-in pack";
  return std::nullopt;
}

}  // namespace tessarok

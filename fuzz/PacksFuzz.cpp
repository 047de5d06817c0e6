// Packs of words. The source is included, because a pack is read once in the life of a process
// and the fuzzer has to make it forget.

#include <memory>

#include "../src/words/BuiltinPacks.cpp"
#include "FuzzDesktop.h"
#include "Input.h"
#include "WordList.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tessarok;
  static fuzz::FuzzDesktop desktop;
  std::destroy_at(&state());
  std::construct_at(&state());
  const auto text = fuzz::textOf(data, size);
  desktop.files().put(fuzz::FuzzDesktop::resource("pack_it"), std::string(text));
  BuiltinPacks::rebuild();
  fuzz::checkListedWords(BuiltinPacks::words());
  fuzz::check(BuiltinPacks::words() ==
                  (text::isValidUtf8(text) ? WordList::parse(text).toSet() : WordSet()),
              "a pack holds its words, and a broken one none");
  return 0;
}

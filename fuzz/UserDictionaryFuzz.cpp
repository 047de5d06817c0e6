// The file that the person edits.

#include "FuzzDesktop.h"
#include "Input.h"
#include "WordList.h"
#include "words/UserDict.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tessarok;
  static fuzz::FuzzDesktop desktop;
  const auto text = fuzz::textOf(data, size);
  desktop.files().put(UserDict::fileURL(), std::string(text));
  const auto before = UserDict::words();
  UserDict::reloadIfChanged();
  fuzz::checkListedWords(UserDict::words());
  const auto& expected = text::isValidUtf8(text) ? WordList::parse(text).toSet() : before;
  fuzz::check(UserDict::words() == expected, "an unreadable file changes nothing");
  UserDict::seedIfMissing();
  fuzz::check(desktop.files().text(UserDict::fileURL()) == text, "the file is never written");
  return 0;
}

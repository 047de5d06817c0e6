// "ignored.txt": the words that are never corrected again.

#include "LearnedLists.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tessarok;
  static fuzz::FuzzDesktop desktop;
  desktop.files().clear();
  desktop.files().put(UserDict::directory() / "rejects.txt", "cgfcb,j\t2\n");
  fuzz::checkLearning(desktop, std::string(fuzz::textOf(data, size)),
                      UserDict::directory() / "ignored.txt");
  return 0;
}

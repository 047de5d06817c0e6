// "rejects.txt": how often the fix of a word was rejected.

#include "LearnedLists.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tessarok;
  static fuzz::FuzzDesktop desktop;
  desktop.files().clear();
  desktop.files().put(UserDict::directory() / "ignored.txt", "vjcrdf\n");
  fuzz::checkLearning(desktop, std::string(fuzz::textOf(data, size)),
                      UserDict::directory() / "rejects.txt");
  return 0;
}

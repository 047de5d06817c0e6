// One running copy as far as learning goes, for tests with many that are killed. Reads from
// standard input: a line "reject WORD" counts a rejection, "tick" is what two seconds bring. Each
// is answered when it is done with the line itself; an answered rejection is to survive anything.
//
// usage: tessarok_learning_copy HOME only|many

#include <iostream>
#include <memory>
#include <string>

#include "desktops/virtual/VirtualDesktop.h"
#include "tests/support/PartlyVirtualDesktop.h"
#include "words/FolderLock.h"
#include "words/IgnoreList.h"

namespace {

using namespace tessarok;

class CopyDesktop final : public testing::PartlyVirtualDesktop {
 public:
  explicit CopyDesktop(const std::filesystem::path& home) : base_(home, std::nullopt) {
    platform::setDesktop(*this);
  }
  virtualdesktop::VirtualDesktop& base() override { return base_; }

 private:
  virtualdesktop::VirtualDesktop base_;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  CopyDesktop desktop(argv[1]);
  const bool isOnly = std::string(argv[2]) == "only";
  std::unique_ptr<platform::FileLock> lock;
  if (isOnly && FolderLock::acquire(FolderLock::kInstance, lock)) return 3;
  IgnoreList::join(isOnly ? IgnoreList::Company::onlyOne : IgnoreList::Company::many);
  IgnoreList::load(IgnoreList::Recovery::onDisk);
  for (std::string line; std::getline(std::cin, line);) {
    if (line == "tick") {
      IgnoreList::tick();
    } else {
      IgnoreList::recordRejection(line.substr(line.find(' ') + 1));
    }
    IgnoreList::flush();
    std::cout << line << std::endl;
  }
  IgnoreList::leave();
  for (const auto& message : desktop.base().systemLog().take())
    std::cerr << message << '\n';
  return 0;
}

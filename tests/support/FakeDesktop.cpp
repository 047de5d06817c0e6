#include "tests/support/FakeDesktop.h"

#include "desktops/layouts/TableLayout.h"
#include "tests/support/TestFiles.h"
#include "typing/DiagnosticLog.h"
#include "words/IgnoreList.h"
#include "words/ListQueue.h"

namespace tessarok::testing {

FakeDesktop::FakeDesktop()
    : base_(home_.path(), data_.path()),
      files_(home_.path(), posix::PosixFiles::defaultDataHome(home_.path())) {
  for (const auto* identifier : {"com.apple.keylayout.US", "com.apple.keylayout.RussianWin"}) {
    inputSources_.layouts.push_back(std::make_shared<layouts::TableLayout>(identifier));
  }
  inputSources_.active = "com.apple.keylayout.US";
  // Nothing is found but what the test adds: not the data of the source tree either.
  bundle_.installed = true;
  platform::setDesktop(*this);
}

FakeDesktop::~FakeDesktop() {
  IgnoreList::flush();
  ListQueue::drain();
  DiagnosticLog::drain();
}

void FakeDesktop::addResource(std::string_view name, std::string_view text) {
  const auto fileName = std::string(name) + ".txt";
  // A file already mapped stays as it was.
  writeFile(data_.path() / (fileName + ".new"), text);
  std::filesystem::rename(data_.path() / (fileName + ".new"), data_.path() / fileName);
  bundle_.resources[fileName] = data_.path() / fileName;
}

void FakeDesktop::addAllTestData() {
  for (const auto& entry : std::filesystem::directory_iterator(TESSAROK_TEST_DATA)) {
    if (entry.path().extension() != ".txt") continue;
    addResource(entry.path().stem().string(), readFile(entry.path()));
  }
}

}  // namespace tessarok::testing

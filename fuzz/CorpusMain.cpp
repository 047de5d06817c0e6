// Feeds the files of a corpus to a fuzz target, for compilers that bring no fuzzer. One file after
// another in one process, as a fuzzer does it.
//
// usage: TARGET DIRECTORY…

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <vector>

#include "tests/support/TestFiles.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
  try {
    std::vector<std::filesystem::path> files;
    for (int i = 1; i < argc; ++i) {
      for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
        files.push_back(entry.path());
      }
    }
    std::sort(files.begin(), files.end());
    for (const auto& file : files) {
      std::printf("%s\n", file.c_str());
      std::fflush(stdout);
      const auto text = tessarok::testing::readFile(file);
      static_cast<void>(
          LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
    }
    return files.empty() ? 1 : 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}

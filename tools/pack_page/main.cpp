// Packs the word data for the page: see desktops/web/PackedFiles.h.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "desktops/web/PackedFiles.h"

namespace {

namespace fs = std::filesystem;
using tessarok::web::PackedFiles;

int fail(const std::string& message) {
  std::cerr << "tessarok-pack-page: " << message << '\n';
  return 2;
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 3) return fail("usage: tessarok-pack-page OUTPUT FILE.txt…");
  std::vector<PackedFiles::File> files;
  for (int i = 2; i < count; ++i) {
    const fs::path path(arguments[i]);
    std::ifstream in(path, std::ios::binary);
    files.push_back({path.stem().string(), std::string(std::istreambuf_iterator<char>(in),
                                                       std::istreambuf_iterator<char>())});
    if (!in || files.back().text.empty()) return fail("cannot read " + path.string());
  }
  const auto packed = PackedFiles::pack(files);
  // A page that cannot unpack what it loads would show it too late.
  if (PackedFiles::unpack(packed) != files) return fail("what was packed does not come out again");
  std::ofstream out(arguments[1], std::ios::binary);
  out << packed;
  out.close();
  return out ? 0 : fail(std::string("cannot write ") + arguments[1]);
}

// Whatever is taken for packed files comes apart or not at all; what has come apart is packed and
// comes out again the same.

#include "Check.h"
#include "Input.h"
#include "desktops/web/PackedFiles.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using tessarok::web::PackedFiles;
  const auto files = PackedFiles::unpack(tessarok::fuzz::textOf(data, size));
  std::size_t bytes = 0;
  for (const auto& file : files)
    bytes += file.text.size();
  tessarok::fuzz::check(bytes <= PackedFiles::kMostText, "files are not larger than they may be");
  tessarok::fuzz::check(PackedFiles::unpack(PackedFiles::pack(files)) == files,
                        "what was packed comes out the same");
  return 0;
}

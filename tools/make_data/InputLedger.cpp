#include "InputLedger.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "InputError.h"
#include "Sha256.h"
#include "StandardFile.h"

namespace tessarok::makedata {

namespace {

std::string readFile(const std::filesystem::path& file) {
  const StandardFile stream(std::fopen(file.c_str(), "rb"));
  if (!stream) throw InputError(file, 0, std::string("cannot be opened: ") + std::strerror(errno));
  std::string bytes;
  std::string chunk(1U << 16U, '\0');
  while (const std::size_t got = std::fread(chunk.data(), 1, chunk.size(), stream.get())) {
    bytes.append(chunk, 0, got);
  }
  // A directory opens like a file and only fails here.
  if (std::ferror(stream.get()) != 0) {
    throw InputError(file, 0, std::string("cannot be read: ") + std::strerror(errno));
  }
  return bytes;
}

}  // namespace

std::string InputLedger::read(const std::filesystem::path& file, const std::string& package,
                              const std::string& shownAs) {
  std::string bytes = readFile(file);
  records_.push_back({package, shownAs, sha256(bytes), bytes.size()});
  return bytes;
}

}  // namespace tessarok::makedata

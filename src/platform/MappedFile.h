#pragma once

#include <string_view>

namespace tessarok::platform {

/// A file's bytes, mapped into memory rather than copied, for as long as the object lives.
class MappedFile {
 public:
  MappedFile() = default;
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;
  virtual ~MappedFile() = default;
  [[nodiscard]] virtual std::string_view bytes() const = 0;
};

}  // namespace tessarok::platform
